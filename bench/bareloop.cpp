// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The least that shredding many small files takes: every file of the folder named by the
// argument is overwritten, removed and written out in place, and nothing else is done. As many
// removed files are held as have their writes under way; the last gets an fdatasync.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <iostream>
#include <random>
#include <string>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

constexpr std::size_t blockSize = 4096;
constexpr std::size_t heldFiles = 256;

void require(bool done, const char *what)
{
    if (!done) {
        std::perror(what);
        std::_Exit(EXIT_FAILURE);
    }
}

std::vector<char> randomBlock()
{
    std::vector<char> block(blockSize);
    std::minstd_rand random(std::random_device{}());
    for (char &byte : block)
        byte = static_cast<char>(random() & 0xFF);
    return block;
}

std::vector<std::string> filesIn(const char *folder)
{
    std::vector<std::string> names;
    DIR *stream = ::opendir(folder);
    require(stream != nullptr, folder);
    while (const dirent *entry = ::readdir(stream)) { // NOLINT(concurrency-mt-unsafe)
        if (entry->d_type == DT_REG)
            names.emplace_back(entry->d_name);
    }
    ::closedir(stream);
    return names;
}

/// Overwrites the file and removes its name; returns it open, its writes begun.
int shred(int folder, const std::string &name, const std::vector<char> &block)
{
    const int file = ::openat(folder, name.c_str(), O_RDWR | O_NOFOLLOW | O_CLOEXEC);
    require(file >= 0, name.c_str());
    struct stat status = {};
    require(::fstat(file, &status) == 0, name.c_str());
    for (off_t left = status.st_size; left > 0;) {
        const auto count = std::min(static_cast<std::size_t>(left), block.size());
        require(::write(file, block.data(), count) == static_cast<ssize_t>(count), name.c_str());
        left -= static_cast<off_t>(count);
    }
    require(::unlinkat(folder, name.c_str(), 0) == 0, name.c_str());
    require(::sync_file_range(file, 0, 0, SYNC_FILE_RANGE_WRITE) == 0, name.c_str());
    return file;
}

void finishOldest(std::deque<int> &held)
{
    constexpr unsigned wholeRange =
        SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE | SYNC_FILE_RANGE_WAIT_AFTER;
    const int file = held.front();
    held.pop_front();
    require(::sync_file_range(file, 0, 0, wholeRange) == 0, "sync_file_range");
    if (held.empty())
        require(::fdatasync(file) == 0, "fdatasync");
    ::close(file);
}

void shredFolder(const char *path)
{
    const std::vector<char> block = randomBlock();
    const int folder = ::open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    require(folder >= 0, path);
    std::deque<int> held;
    for (const std::string &name : filesIn(path)) {
        held.push_back(shred(folder, name, block));
        // The last one is left for the end.
        if (held.size() > heldFiles)
            finishOldest(held);
    }
    while (!held.empty())
        finishOldest(held);
    ::close(folder);
    require(::rmdir(path) == 0, path);
}

} // namespace

int main(int argc, char **argv)
{
    require(argc == 2, "which folder?");
    const auto begin = std::chrono::steady_clock::now();
    shredFolder(argv[1]);
    const std::chrono::duration<double, std::milli> taken =
        std::chrono::steady_clock::now() - begin;
    std::cout << "run_ms " << taken.count() << std::endl;
}
