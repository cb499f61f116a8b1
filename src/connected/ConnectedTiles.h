// The connected kinds as the composition root holds them: both services and both behaviours,
// made together from what they share.
#pragma once

#include "connected/GitHubBehaviour.h"
#include "connected/SmartHomeBehaviour.h"

namespace tw {

class Clock;
class Endpoints;
class HttpClient;
class Scheduler;
class SecretStore;

class ConnectedTiles {
public:
    struct Services {
        // All must outlive the tiles.
        HttpClient& http;
        const Endpoints& endpoints;
        const Clock& clock;
        Scheduler& scheduler;
        SecretStore& secrets;
    };

    explicit ConnectedTiles(const Services& services);

    GitHubBehaviour& github() { return m_githubTiles; }
    SmartHomeBehaviour& smartHome() { return m_smartHomeTiles; }

private:
    GitHubService m_github;
    SmartHomeService m_smartHome;
    GitHubBehaviour m_githubTiles;
    SmartHomeBehaviour m_smartHomeTiles;
};

} // namespace tw
