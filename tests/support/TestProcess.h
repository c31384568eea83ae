// What every test process begins with.
#pragma once

namespace LS::Tests {

/// A failed assertion of the library ends the process with its place; the cache folder is a private one.
void PrepareTestProcess();

} // namespace LS::Tests
