#pragma once

#include "datastore/Conn.h"

#include <QString>

#include <memory>

namespace gm::test {

// The engine a test executable runs on, chosen by CTest through GM_TEST_ENGINE
// ("sqlite" by default, or "postgresql"). A PostgreSQL run needs GRAINMILL_TEST_PG_URL, the
// location of a server database the tests may create databases beside; without it the run
// is skipped, never passed silently.
Engine engineUnderTest();
QString engineName();
// True when the engine under test can be used; `why` says what is missing otherwise.
bool engineAvailable(QString* why);

// A new, empty database on the engine under test, with the schema and nothing else.
// Each call gives a database of its own, dropped when the Conn is destroyed... for
// PostgreSQL the database is dropped at process exit.
std::unique_ptr<Conn> freshConn();
// The same, with the sample mill loaded.
std::unique_ptr<Conn> freshSampleConn();
// The location string freshConn() used last (for opening a second connection to it).
QString lastLocation();

} // namespace gm::test

// Put at the top of every test function that needs a database.
#define GM_REQUIRE_ENGINE()                                                                        \
    do {                                                                                           \
        QString gmWhy;                                                                             \
        if (!gm::test::engineAvailable(&gmWhy))                                                    \
            QSKIP(qPrintable(gmWhy));                                                              \
    } while (false)
