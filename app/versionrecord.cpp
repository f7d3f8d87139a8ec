// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Two blocks of data in sections of their own. Installers and inventory tools of
// the suite read the module's identity from the file without running it; the
// program itself reads neither. Optimiser and linker must keep both although nothing
// refers to them, the reserved block immediately before the record.

#include <cstddef>
#include <cstdint>

namespace fileshredder
{

struct VersionRecord {
    std::uint32_t size;
    // The suite's installers know these four words; they are the same for all of its modules.
    std::uint32_t suiteWords[4];
    std::uint8_t reserved[12];
    char productIdentifier[32];
    char productVersion[16];
    char moduleName[32];
    char moduleVersion[16];
    char legalNotice[64];
    char executableName[256];
};

constexpr std::size_t recordSize = 448;
static_assert(sizeof(VersionRecord) == recordSize, "installers read fixed offsets");
static_assert(offsetof(VersionRecord, productIdentifier) == 32);
static_assert(offsetof(VersionRecord, productVersion) == 64);
static_assert(offsetof(VersionRecord, moduleName) == 80);
static_assert(offsetof(VersionRecord, moduleVersion) == 112);
static_assert(offsetof(VersionRecord, legalNotice) == 128);
static_assert(offsetof(VersionRecord, executableName) == 192);

constexpr std::size_t reservedBlockSize = 1024;

} // namespace fileshredder

// clang emits variables in the order of the source in any case.
#if __has_cpp_attribute(gnu::no_reorder)
#define IN_ORDER gnu::no_reorder,
#else
#define IN_ORDER
#endif
#define PLACED_IN_SECTION(name)                                                                    \
    [[ gnu::section(name), gnu::used, IN_ORDER gnu::aligned(32), gnu::visibility("hidden") ]]

// The linker is told to keep these two by name (cmake/versionrecord.cmake). For that they have
// external linkage, with hidden visibility.
extern "C" {

// Filled by the suite's release tooling after the build; the first bytes are how it finds it.
PLACED_IN_SECTION(".qarvo")
std::uint8_t fileshredderReservedBlock[fileshredder::reservedBlockSize] = {0xDE, 0xAD, 0xC0, 0xDE};

PLACED_IN_SECTION(".version")
fileshredder::VersionRecord fileshredderVersionRecord = {
    fileshredder::recordSize,
    {3, 0x00410000, 1, 0x04000000},
    {},
    "brenvalesecure",
    "3.0.0.65",
    "fileshredder",
    "1.0.0.1024",
    "Copyright (c) 2026 Brenvale. Licensed under the MIT License.",
    "fileshredder",
};
}
