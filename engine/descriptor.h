// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#pragma once

/// Owns a file descriptor and closes it. Used by one thread at a time.
class Descriptor final
{
public:
    explicit Descriptor(int opened = -1)
        : number(opened)
    {
    }
    Descriptor(Descriptor &&other) noexcept;
    Descriptor &operator=(Descriptor &&other) noexcept;
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    ~Descriptor();

    bool isOpen() const { return number >= 0; }
    int get() const { return number; }
    /// Leaves the descriptor to the caller.
    int release();

private:
    int number;
};
