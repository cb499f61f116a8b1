#include "connected/ConnectedTiles.h"

namespace tw {

ConnectedTiles::ConnectedTiles(const Services& services)
    : m_github({.http = services.http, .endpoints = services.endpoints, .clock = services.clock})
    , m_smartHome({.http = services.http, .clock = services.clock, .scheduler = services.scheduler})
    , m_githubTiles(m_github, services.scheduler, services.secrets)
    , m_smartHomeTiles(m_smartHome, services.secrets) {}

} // namespace tw
