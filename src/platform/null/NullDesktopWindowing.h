// Desktop windowing where the system offers no control over window levels: windows stay as the
// toolkit made them and are never reported covered.
#pragma once

#include "platform/DesktopWindowing.h"

namespace tw {

class NullDesktopWindowing final : public DesktopWindowing {
    Q_OBJECT
public:
    using DesktopWindowing::DesktopWindowing;

    void prepare(QObject*, Focus) override {}
    void watchCoverage(QObject*) override {}
    void release(QObject*) override {}
    bool isCompositing() const override { return true; }
    bool canReportCoverage() const override { return false; }
};

} // namespace tw
