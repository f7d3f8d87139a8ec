// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// One test program holds the suites of a folder, a class in a source each, and runs
// the one that its first argument names. What follows goes to Qt Test.

#pragma once

#include <QObject>
#include <QtTest>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <vector>

namespace testsupport
{

/// A class of tests and its name.
struct Suite {
    const char *name;
    std::unique_ptr<QObject> (*make)();
    /// Called before the application exists, with Qt Test's arguments; may be nullptr.
    void (*prepare)(int argc, char **argv);
};

/// The suites of this program, to which TEST_SUITE() adds.
inline std::vector<Suite> &suites()
{
    static std::vector<Suite> ofThisProgram;
    return ofThisProgram;
}

/// Adds a suite to this program; a constant is initialised with the result, before main().
template <typename TestClass>
bool addSuite(const char *name, void (*prepare)(int argc, char **argv))
{
    const auto make = []() -> std::unique_ptr<QObject> { return std::make_unique<TestClass>(); };
    suites().push_back({name, make, prepare});
    return true;
}

/// The whole of main().
template <typename Application>
int runSuite(int argc, char **argv)
{
    const auto suite = std::find_if(suites().cbegin(), suites().cend(), [&](const Suite &known) {
        return argc > 1 && qstrcmp(known.name, argv[1]) == 0;
    });
    if (suite == suites().cend()) {
        for (const Suite &known : suites())
            std::puts(known.name);
        return 2;
    }
    argv[1] = argv[0];
    ++argv;
    --argc;
    if (suite->prepare != nullptr)
        suite->prepare(argc, argv);
    const Application application(argc, argv);
    return QTest::qExec(suite->make().get(), argc, argv);
}

} // namespace testsupport

/// Stands at the end of a test source, in the place of QTEST_MAIN().
#define TEST_SUITE(suite, TestClass) TEST_SUITE_PREPARED_BY(suite, TestClass, nullptr)

#define TEST_SUITE_PREPARED_BY(suite, TestClass, prepare)                                          \
    static const bool is##TestClass##Added = testsupport::addSuite<TestClass>(#suite, prepare);
