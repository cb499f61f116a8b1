// The entry: the chain of launch flags in their fixed order, then the desktop host.
#pragma once

#include "app/LaunchStep.h"

#include <QList>

namespace tw {

class LaunchChain {
public:
    LaunchChain() = delete;

    // The steps in the order they are tested; the first flag present with its values wins.
    static const QList<LaunchStep>& steps();
    // What runs when no flag wins.
    static const LaunchStep& application();

    // The first flag step whose flag and values are present, or nullptr.
    static const LaunchStep* winner(const LaunchArguments& arguments);

    // Makes the application object the winner needs, applies the language preference, walks the
    // chain and gives the process's exit status.
    static int run(int& argc, char** argv);
};

} // namespace tw
