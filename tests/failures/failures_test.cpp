// SPDX-License-Identifier: MIT
// The uses of the library while the system fails: each of its calls in turn, the disk at each byte, the process at
// each write.
#include "failures/scenarios.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

// Where the objects of a recording begin, and its end.
std::vector<std::size_t> Bounds(const std::string& recording) {
    std::vector<std::size_t> bounds;
    for (std::size_t at = 0; at < recording.size(); at = recording.find("QObject\nm_", at + 1)) {
        bounds.push_back(at);
    }
    bounds.push_back(recording.size());
    return bounds;
}

// Runs a scenario in a folder of its own, in which are the examples and the files given.
class EachCall : public testing::TestWithParam<const Scenario*> {
protected:
    EachCall() {
        std::filesystem::create_directory_symlink(FWLIB_TEST_ROOT "/examples", m_Place.Path("examples"));
        std::filesystem::copy(FWLIB_TEST_ROOT "/tests/failures/given", m_Place.Path("given"));
        std::filesystem::current_path(m_Place.Path("."));
        EPipeline().BuildPipeText("", nullptr); // the thread keeps its last failure until its end
    }

    // With what it prints and reports in memory.
    Account Performed(const Calls& calls) {
        Account told;
        std::filesystem::remove(Written);
        told.output = Captured([&] {
            now = calls;
            GetParam()->act(told, m_Place);
            now = {false, 0, false, now.failed};
        });
        told.written = FileText(Written);
        return told;
    }

    Place m_Place;
};
using DiskFull = EachCall;

// The sanitizers look at how the library gets past an error, which one of three rooms shows as well.
#ifdef __SANITIZE_ADDRESS__
constexpr std::size_t RoomStep = 3;
#else
constexpr std::size_t RoomStep = 1;
#endif

using Kill = EachCall;

std::string NameOf(const testing::TestParamInfo<const Scenario*>& info) {
    return info.param->name;
}
INSTANTIATE_TEST_SUITE_P(, EachCall, testing::Range(std::begin(Scenarios), std::end(Scenarios)), NameOf);
INSTANTIATE_TEST_SUITE_P(, DiskFull, testing::Range(Writers, std::end(Scenarios)), NameOf);
INSTANTIATE_TEST_SUITE_P(, Kill, testing::Range(Writers, std::end(Scenarios)), NameOf);

} // namespace

// Nothing is kept, nothing is released twice, and what the results promise is there, or a loss is reported.
TEST_P(EachCall, FailsInTurn) {
    const Account whole = Performed({true});
    ASSERT_EQ(std::count(whole.answers.begin(), whole.answers.end(), '1'), GetParam()->ones) << whole.answers;
    ASSERT_EQ(whole.written, FileText(std::string("given/") + GetParam()->name + ".written"));
    ASSERT_EQ(whole.broken + whole.output.reported, "");
    for (const bool bLasting : {false, true}) {
        int iNth = 0;
        do {
            const Account told = Performed({true, ++iNth, bLasting});
            SCOPED_TRACE(testing::Message()
                         << "call " << iNth << (bLasting ? " and all later ones, " : ", ")
                         << (now.failed ? now.failed : "none") << ": " << told.output.reported);
            ASSERT_EQ(told.broken, "");
            ASSERT_EQ(held, 0) << "not given back";
            ASSERT_FALSE(now.failed && std::strcmp(now.failed, "malloc") == 0 &&
                         told.output.reported.find("Input/output error") != std::string::npos);
            ASSERT_EQ(told.output.reported.find("Unable to store"),
                      told.output.reported.rfind("Unable to store"));
            if (GetParam()->tells && told.answers == whole.answers && told.output.reported.empty()) {
                ASSERT_EQ(told.result, whole.result);
                ASSERT_EQ(told.written, whole.written);
                ASSERT_EQ(told.output.printed, whole.output.printed);
            }
        } while (now.failed);
        EXPECT_GT(iNth, 3);
    }
}

// The texts of a thread's last failure are freed at its end, or at once if the thread cannot keep them.
TEST(EachCallInAThread, LeavesNothingBehind) {
    bool untold = false;
    for (int nth = 1; nth == 1 || now.failed; ++nth) {
        std::thread([nth, &untold] {
            now = {true, nth};
            EPipeline().BuildPipeText("", nullptr);
            now = {false, 0, false, now.failed};
            const Failure* const failure = LastFailure();
            ASSERT_TRUE(failure) << now.failed;
            if (now.failed && now.failed == std::string("pthread_setspecific")) {
                EXPECT_STREQ(failure->pchText, "not enough memory for the reason");
                untold = true;
            }
        }).join();
        ASSERT_EQ(held, 0) << now.failed;
    }
    EXPECT_TRUE(untold);
}

// What a recorder leaves of some objects on a disk with so much space, and what it reports.
struct Left {
    std::string file;
    int lines = 0; // of reports: two for each gap
    bool lost = false;

    Left(const Place& place, std::size_t room) : file(place.front) {
        room -= std::min(room, file.size());
        for (std::size_t n = place.first, gap = 0; n < place.behind; ++n) {
            const std::string& text = place.texts[n];
            room = n == place.back ? SIZE_MAX : room;
            const bool bFits = text.size() <= room;
            lines += !bFits && !gap ? 2 : 0;
            gap = !bFits;
            lost = lost || !bFits;
            file += bFits ? text : "";
            room -= bFits && room != SIZE_MAX ? text.size() : 0;
        }
    }
};

// A file is the front of all, a recording what fits of complete objects, also when there is space again for the last ones.
// A recorder reports it once for each gap; what is asked for by a call returns 0. What stands before the object that is
// cut is there already, but for cuts between two.
TEST_P(DiskFull, KeepsWhatFits) {
    m_Place.behind = std::size(m_Place.objects);
    const std::string all = Performed({}).written;
    const std::vector<std::size_t> bounds = Bounds(all);
    const bool bFile = GetParam()->writes == Writes::File;
    for (std::size_t room = 0; room <= all.size(); room += RoomStep) {
        const auto cut = std::upper_bound(bounds.begin(), bounds.end(), room) - 1;
        const auto whole = static_cast<std::size_t>(cut - bounds.begin());
        m_Place.first = room == *cut ? 0 : whole;
        m_Place.front = all.substr(0, bounds[m_Place.first]);
        m_Place.behind = std::min(whole + 5, std::size(m_Place.objects));
        m_Place.back = room % 2 ? whole + 3 : SIZE_MAX;
        const Account told = Performed({false, 0, false, nullptr, room});
        SCOPED_TRACE(testing::Message() << "room " << room << ": " << told.output.reported);
        const bool bAnswered = told.answers.find('0') == std::string::npos;
        const Left left(m_Place, room);
        const bool bLost = bFile ? room < all.size() : left.lost;
        ASSERT_EQ(told.broken, "");
        ASSERT_EQ(told.written, bFile ? all.substr(0, room) : left.file);
        ASSERT_EQ(std::count(told.output.reported.begin(), told.output.reported.end(), '\n'),
                  bFile ? 0 : left.lines);
        ASSERT_EQ(bAnswered, !bLost || GetParam()->writes == Writes::Recording);
    }
}

// Before, within or behind each write. The file is the front of all, and has at least the objects for which 1 was returned.
TEST_P(Kill, LeavesTheFrontOfAll) {
    const std::string all = Performed({}).written;
    const std::vector<std::size_t> bounds = Bounds(all);
    for (const unsigned int moment : {0U, 1U, 2U}) {
        int iStatus = 1;
        for (int iNth = 1; iStatus != 0; ++iNth) {
            SCOPED_TRACE(testing::Message() << "write " << iNth << ", moment " << moment);
            const pid_t child = fork();
            if (child == 0) {
                Performed({false, 0, false, nullptr, SIZE_MAX, iNth, moment});
                _exit(0);
            }
            waitpid(child, &iStatus, 0);
            ASSERT_TRUE(WIFEXITED(iStatus));
            const std::string file = FileText(Written);
            ASSERT_EQ(file, all.substr(0, file.size()));
            ASSERT_GE(file.size(),
                      bounds.at(iStatus ? static_cast<std::size_t>(WEXITSTATUS(iStatus)) - 1 : 0));
        }
    }
}
