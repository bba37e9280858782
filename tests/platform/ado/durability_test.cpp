#include <gtest/gtest.h>

#include "engines.h"

#ifndef _WIN32
#include <sys/wait.h>
#include <unistd.h>
#include <csignal>
#endif

using namespace ado20;

TEST(EmbeddedDurability, AFullDiskFailsUpdateAndLosesNothing) {
    const TemporaryFolder folder;
    const _ConnectionPtr connection = newDatabase(
        folder.path("plein.mdb"), "CREATE TABLE T(N INTEGER, M MEMO); PRAGMA max_page_count = 40");
    const _RecordsetPtr records = opened(connection, "T");
    HResult failure = hrOk;
    int added = 0;
    while (failure == hrOk && added < 1000) {
        records->AddNew();
        put(records, "N", added);
        put(records, "M", std::string(3000, 'm'));
        failure = failureOf([&] { records->Update(); });
        if (failure == hrOk) ++added;
    }
    EXPECT_EQ(failure, hrMediumFull);
    EXPECT_EQ(records->GetEditMode(), adEditAdd) << "the record still waits";
    connection->Execute("PRAGMA max_page_count = 400");
    records->Update();
    EXPECT_EQ(records->GetRecordCount(), added + 1);
    EXPECT_EQ(firstOf(connection, "SELECT count(*) FROM T"), std::to_string(added + 1));
    // In a batch SQLite may give up the whole of it; the end of the batch says so.
    connection->Execute("PRAGMA max_page_count = 1");
    connection->BeginTrans();
    EXPECT_EQ(failureOf([&] {
                  connection->Execute("INSERT INTO T SELECT * FROM T; INSERT INTO T SELECT * FROM T");
              }),
              hrMediumFull);
    failureOf([&] { connection->RollbackTrans(); });
    EXPECT_EQ(firstOf(connection, "SELECT count(*) FROM T"), std::to_string(added + 1));
}

#ifndef _WIN32

namespace {

/// Adds and changes records until it is killed; the number of each one goes into the pipe once `Update` has
/// returned.
[[noreturn]] void updateUntilKilled(const std::string& path, int first, int pipe) {
    // The system survives the process, so there is no need to wait for its disk.
    const _RecordsetPtr records = opened(connected(fileString(path), "PRAGMA synchronous = OFF"), "T");
    for (int i = first;; ++i) {
        records->AddNew();
        put(records, "N", i);
        put(records, "M", std::string(static_cast<std::size_t>(i % 7) * 1500, 'm'));
        records->Update();
        put(records, "DONE", i);
        records->Update();
        if (write(pipe, &i, sizeof i) != sizeof i) _exit(1);
    }
}

}  // namespace

TEST(EmbeddedDurability, WhatUpdateHasCommittedOutlivesAKill) {
    const TemporaryFolder folder;
    const std::string path = folder.path("tue.mdb");
    newDatabase(path, "CREATE TABLE T(N INTEGER, M MEMO, DONE INTEGER)")->Close();
    int acknowledged = -1, killed = 0;
    for (int round = 0; round < 200; ++round) {
        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        const pid_t child = fork();
        if (child == 0) updateUntilKilled(path, acknowledged + 1000, ends[1]);
        close(ends[1]);
        int number = 0;
        // Killed after some updates, at a moment that differs from round to round.
        for (int i = 0; i <= round % 3 && read(ends[0], &number, sizeof number) == sizeof number; ++i)
            acknowledged = number;
        usleep(static_cast<useconds_t>(round * 37 % 1500));
        kill(child, SIGKILL);
        while (read(ends[0], &number, sizeof number) == sizeof number) acknowledged = number;
        close(ends[0]);
        int status = 0;
        waitpid(child, &status, 0);
        killed += WIFSIGNALED(status) ? 1 : 0;
        const _RecordsetPtr last =
            opened(connected(fileString(path)), "SELECT * FROM T WHERE N = " + std::to_string(acknowledged));
        ASSERT_EQ(textOf(last, "DONE"), std::to_string(acknowledged)) << "round " << round;
        ASSERT_EQ(textOf(last, "M").size(), static_cast<std::size_t>(acknowledged % 7) * 1500);
    }
    EXPECT_EQ(killed, 200);
    const _ConnectionPtr connection = connected(fileString(path));
    EXPECT_EQ(firstOf(connection, "PRAGMA integrity_check"), "ok");
    EXPECT_EQ(firstOf(connection, "SELECT count(*) <= 200 FROM T WHERE DONE IS NULL"), "1")
        << "at most one a kill";
}

#endif
