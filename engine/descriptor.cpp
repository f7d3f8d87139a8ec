// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "engine/descriptor.h"

#include <utility>

#include <unistd.h>

Descriptor::Descriptor(Descriptor &&other) noexcept
    : number(other.release())
{
}

Descriptor &Descriptor::operator=(Descriptor &&other) noexcept
{
    std::swap(number, other.number);
    return *this;
}

Descriptor::~Descriptor()
{
    if (isOpen())
        ::close(number);
}

int Descriptor::release()
{
    return std::exchange(number, -1);
}
