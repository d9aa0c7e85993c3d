#pragma once

#include <filesystem>

namespace host {

/**
 * Loads all libraries that a shared library needs, one by one and the deepest first, and keeps them
 * for the life of the process.
 *
 * dlopen() holds the loader's lock until the last of the needed libraries is in. For a plug-in with
 * more than a hundred of them that is tens of milliseconds in which no other thread can load
 * anything. Here the lock is free between two libraries.
 *
 * @param library  path of an ELF file; anything else loads nothing
 *
 * Libraries are looked for where this process already has some from; what can't be loaded alone is
 * left for the library's own dlopen(). Any thread.
 */
void load_needed_libraries(const std::filesystem::path &library);

}  // namespace host
