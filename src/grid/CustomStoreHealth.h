// Whether the custom widget store could read its file; while it couldn't, the grid keeps every
// custom widget it can't find a definition for, so an unreadable store never costs a widget.
#pragma once

namespace tw {

class CustomStoreHealth {
public:
    virtual ~CustomStoreHealth() = default;

    virtual bool isHealthy() const = 0;
};

} // namespace tw
