// Mounts of the test process's own: what a test mounts vanishes with the process, even on a crash.
#pragma once

#include <QString>

namespace tw::test {

// Enters a private mount namespace, through a user namespace when not root; false when the system
// allows neither.
bool enterPrivateMountNamespace();

// Makes `directory` read-only in this namespace, which stops root as well; false on failure.
bool mountReadOnly(const QString& directory);

} // namespace tw::test
