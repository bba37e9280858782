#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <functional>
#include <random>
#include <thread>

#include <kestra/project/chantier.h>
#include <kestra/project/places/moved_project.h>
#include <kestra/project/writing/change_file.h>
#include <platform/faulty_files.h>
#include <platform/machine.h>
#include <platform/replaceable.h>

#include "../../support/child_process.h"
#include "../../support/memory_files.h"
#include "../../support/recorders.h"
#include "../../support/temporary_folder.h"

namespace {

using platform::FaultyFiles;
using platform::FileKind;
using platform::Replaced;
using platform::replaceFiles;

const std::string content =
    "note\r\n$VARCHT;X;one\r\n$.ARCHT;D;1\r\n$VARCHT;Y;+\r\n2\r\n$.ARCHT;D;2\r\n$VARCHT;X;C:\\OLD\\f\r\n";
constexpr const char* project = "C:\\p\\a.cht";
constexpr const char* changeFile = "C:\\p\\a.ch~";

/// One write of each kind; it answers whether it says that it was done.
const struct {
    const char* name;
    std::function<bool(Cchantier&)> run;
    bool tells = true;
} writes[] = {
    {"Setvar, same length", [](Cchantier& c) { return c.Setvar("$VARCHT", "X", "two") == 2; }},
    {"Setvar, longer", [](Cchantier& c) { return c.Setvar("$VARCHT", "X", "a longer value") == 2; }},
    {"Setvar, appended", [](Cchantier& c) { return c.Setvar("$VARCHT", "NEW", "1") == 2; }},
    {"Changevar, two lines", [](Cchantier& c) { return c.Changevar("$VARCHT", "X", "$VORTLI") == 2; }},
    {"Compresse", [](Cchantier& c) { return c.Compresse() == 2; }},
    // A failed read gives 1 too, with the file as it was.
    {"Maj_DirCht", [](Cchantier& c) { return c.Maj_DirCht() == 1; }, false},
};

class StoppedWrite : public testing::Test {
  protected:
    /// Runs a write over a new project in memory, through `faulty`; true when it says that it was done.
    template <class Write>
    bool run(const Write& write) {
        m_files.put(project, content);
        const Replaced inForce(replaceFiles, m_faulty);
        Cchantier chantier;
        chantier.m_cheminCht = project;
        return write.run(chantier);
    }
    /// The file as the next reader finds it.
    std::string readAfter() {
        const Replaced inForce(replaceFiles, m_files);
        Cchantier chantier;
        EXPECT_NE(chantier.Open(project), nullptr);
        chantier.Close();
        EXPECT_EQ(m_files.kind(changeFile), FileKind::missing);
        std::string now;
        platform::readWholeFile(project, now);
        return now;
    }
    template <class Write>
    std::string written(const Write& write) {
        m_faulty.stopAfterWrites(-1);
        EXPECT_TRUE(run(write)) << write.name;
        return readAfter();
    }
    template <class Write>
    void expectBeforeOrAfter(const Write& write, const std::string& after, bool done) {
        const std::string now = readAfter();
        EXPECT_TRUE(now == after || (now == content && !(done && write.tells)))
            << write.name << ", after " << m_faulty.calls() << " calls:\n"
            << now;
    }
    MemoryFiles m_files;
    FaultyFiles m_faulty{m_files};
};

TEST_F(StoppedWrite, LeavesTheFileBeforeOrAfterWhereverThePowerIsCut) {
    for (const auto& write : writes) {
        const std::string after = written(write);
        EXPECT_NE(after, content) << write.name;
        bool stopped = true;
        for (long n = 0; stopped; ++n) {
            for (unsigned seed = 0; seed < (n == 0 ? 2u : 60u); ++seed) {
                m_faulty.stopAfterWrites(n);
                const bool done = run(write);
                stopped = m_faulty.stopped();
                // Seed 0: the process alone stops; what it wrote is there.
                if (seed > 0) m_files.cutPower(seed);
                expectBeforeOrAfter(write, after, done);
            }
        }
    }
}

TEST_F(StoppedWrite, FailsClearlyAndLosesNothing) {
    for (const auto& write : writes) {
        const std::string after = written(write);
        bool done = false;
        for (long n = 1; n == 1 || !done || n < m_faulty.calls(); ++n) {
            m_faulty.failAtCall(n);
            done = run(write);
            expectBeforeOrAfter(write, after, done);
        }
        m_faulty.failAtCall(0);
        m_faulty.diskFull(true);
        EXPECT_FALSE(run(write)) << write.name;
        EXPECT_EQ(readAfter(), content);
        m_faulty.diskFull(false);
    }
}

/// What stands beside a project when it is opened, and what becomes of both.
TEST_F(StoppedWrite, OnlyAWholeRecordOfThisFileIsWrittenBack) {
    const RecordedTraces traces;
    run(writes[1]);
    m_faulty.stopAfterWrites(2);  // the record is whole, the project half written
    run(writes[1]);
    std::string record, half;
    {
        const Replaced inForce(replaceFiles, m_files);
        ASSERT_TRUE(platform::readWholeFile(changeFile, record) && platform::readWholeFile(project, half));
    }
    ASSERT_NE(half, content);
    const auto open = [&](const std::string& file, const std::string& beside) {
        m_files.put(project, file);
        m_files.put(changeFile, beside);
        return readAfter();
    };
    EXPECT_EQ(open(half, record), content);
    EXPECT_EQ(open(content, record), content);
    EXPECT_EQ(open("edited by somebody since\r\n" + content, record),
              "edited by somebody since\r\n" + content);
    for (std::size_t cut = 0; cut < record.size(); cut += 3)
        EXPECT_EQ(open(half, record.substr(0, cut)), half);
    for (std::size_t harmed = 8; harmed < record.size(); harmed += 3) {
        std::string bytes = record;
        bytes[harmed] ^= 1;
        EXPECT_EQ(open(half, bytes), half) << harmed;
    }
    m_faulty.stopAfterWrites(-1);
    m_files.put(changeFile, "somebody's own file");
    EXPECT_FALSE(run(writes[0])) << "not written, and nothing of others is lost";
    const Replaced inForce(replaceFiles, m_files);
    ASSERT_TRUE(platform::readWholeFile(changeFile, record));
    EXPECT_EQ(record, "somebody's own file");
}

/// The value of round `k`: every second one makes the line grow.
std::string valueOf(std::size_t k) {
    return std::string(5 + 7 * (k / 2), static_cast<char>('a' + k % 26));
}

TEST(WriterProcess, DISABLED_Writes) {
    const std::string argument = platform::theMachine().environment("KESTRA_CHILD");
    Cchantier chantier;
    chantier.m_cheminCht = argument.substr(2).c_str();
    for (std::size_t k = 0; argument[0] == '*' || k < 40; ++k) {
        const std::string name = argument[0] == '*' ? "X" : argument[0] + std::to_string(k);
        ASSERT_EQ(chantier.Setvar("$VARCHT", name.c_str(), valueOf(k % 2000).c_str()), 2);
        int done = 0;
        const std::string before = argument[0] + std::to_string(k - 1);
        if (k % 10 == 9) done = chantier.Changevar("$VARCHT", before.c_str(), nullptr);
        ASSERT_GE(done, 0);
        if (k % 20 == 19 && argument[0] != '*') done = chantier.Compresse();
        ASSERT_GE(done, 0);
    }
}

TEST(WriterProcess, KilledAtAnyMomentLeavesTheFileBeforeOrAfter) {
    const char* const wanted = std::getenv("KESTRA_KILLS");
    const int kills = wanted != nullptr ? std::atoi(wanted) : 25;
    const TemporaryFolder folder;
    const std::string head = "note\r\n$VARCHT;X;", tail = std::string(300'000, 't') + "\r\n";
    std::minstd_rand random(static_cast<unsigned>(kills));
    for (int i = 0; i < kills; ++i) {
        const std::string path = folder.write("a.cht", head + "\r\n" + tail);
        ChildProcess writer("WriterProcess.DISABLED_Writes", "* " + path);
        for (int waited = 0; folder.read("a.cht").size() == head.size() + 2 + tail.size() && waited < 20'000;
             ++waited)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 20'000));
        writer.kill();
        Cchantier chantier;
        chantier.m_cheminCht = path.c_str();
        CStringArray fields;
        ASSERT_EQ(chantier.Getvar("$VARCHT", "X", 0, fields), 1) << i;
        const std::string value(fields[2].view()), now = folder.read("a.cht");
        const std::size_t round = value.empty() ? 0 : (value.size() - 5) / 7 * 2;
        EXPECT_TRUE(value.empty() || value == valueOf(round) || value == valueOf(round + 1))
            << i << ": " << value;
        EXPECT_TRUE(now == head + value + "\r\n" + tail) << i;
    }
}

TEST(WriterProcess, TwoAtOnceTakeTurns) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a.cht", "note\r\n");
    {
        ChildProcess first("WriterProcess.DISABLED_Writes", "A " + path);
        ChildProcess second("WriterProcess.DISABLED_Writes", "B " + path);
        EXPECT_TRUE(first.wait());
        EXPECT_TRUE(second.wait());
    }
    Cchantier chantier;
    chantier.m_cheminCht = path.c_str();
    CStringArray fields;
    int lines = 0;
    for (const char writer : {'A', 'B'})
        for (std::size_t k = 0; k < 40; ++k) {
            const std::string name = writer + std::to_string(k);
            const bool deleted = k % 10 == 8;
            ASSERT_EQ(chantier.Getvar("$VARCHT", name.c_str(), 0, fields), deleted ? 0 : 1) << name;
            EXPECT_TRUE(deleted || fields[2].view() == valueOf(k)) << name;
            lines += deleted ? 0 : 1;
        }
    EXPECT_EQ(chantier.Getvar("$VARCHT", "*", 0, fields), lines) << "nothing else is there";
}

TEST(WriterProcess, DISABLED_TakesItsTime) {
    const std::string path = platform::theMachine().environment("KESTRA_CHILD");
    const auto turn = kestra::ChangeFile::take(path);
    ASSERT_TRUE(turn != nullptr && platform::createWholeFile((path + ".taken").c_str(), ""));
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    ASSERT_TRUE(platform::replaceWholeFile(path.c_str(), "note\r\nlate\r\n"));
}

TEST(WriterProcess, AMoveWaitsForItsTurn) {
    const TemporaryFolder folder;
    const std::string path = folder.write("a.cht", "note\r\n"), to = folder.path("b\\a.cht");
    folder.write("b\\x", "");
    ChildProcess writer("WriterProcess.DISABLED_TakesItsTime", path);
    for (int waited = 0;
         waited < 20'000 && platform::theFiles().kind((path + ".taken").c_str()) != FileKind::file; ++waited)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    EXPECT_TRUE(kestra::moveProject(path, to));
    EXPECT_TRUE(writer.wait());
    for (const char* gone : {"a.cht", "a.ch~", "b\\a.ch~"})
        EXPECT_EQ(platform::theFiles().kind(folder.path(gone).c_str()), FileKind::missing) << gone;
    const std::string now = folder.read("b\\a.cht");
    EXPECT_TRUE(now.starts_with("note\r\nlate\r\n$VARCHT;MAJDIRCHT;") && now.ends_with("\\B\\\r\n")) << now;
}

TEST(WriterProcess, DISABLED_Cuts) {
    const std::string path = platform::theMachine().environment("KESTRA_CHILD");
    for (int k = 0; k < 300; ++k) {
        const auto file = platform::theFiles().open(path.c_str(), platform::OpenMode::update);
        const int size = 2000 + k * 37 % 500;
        if (file != nullptr && file->size() > size) file->truncate(size);
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

TEST(WriterProcess, AFileThatIsCutShortMeanwhileKeepsWhatIsLeft) {
    const TemporaryFolder folder;
    const std::string head = "note\r\n$VARCHT;KEPT;1\r\n$VARCHT;X;";
    const std::string path = folder.write("a.cht", head + "\r\n" + std::string(3000, 't') + "\r\n");
    ChildProcess cutter("WriterProcess.DISABLED_Cuts", path);
    Cchantier chantier;
    chantier.m_cheminCht = path.c_str();
    CStringArray fields;
    std::string last;
    for (std::size_t k = 0; k < 120; ++k) {
        const std::string value = valueOf(k % 80), added = "T" + std::to_string(k);
        if (chantier.Setvar("$VARCHT", "X", value.c_str()) == 2) last = value;
        ASSERT_EQ(chantier.Getvar("$VARCHT", "KEPT", 0, fields), 1) << k;
        ASSERT_EQ(chantier.Getvar("$VARCHT", "X", 0, fields), 1) << k;
        EXPECT_EQ(fields[2].view(), last) << k;
        chantier.Setvar("$VARCHT", added.c_str(), std::string(500, 't').c_str());
    }
    EXPECT_TRUE(cutter.wait());
    EXPECT_EQ(chantier.Setvar("$VARCHT", "X", "end"), 2);
    const std::string now = folder.read("a.cht");
    EXPECT_TRUE(now.starts_with(head + "end") && now.find("\r\ntt") < 500 && now.size() > 1600) << now;
    EXPECT_EQ(platform::theFiles().kind(folder.path("a.ch~").c_str()), FileKind::missing);
}

}  // namespace
