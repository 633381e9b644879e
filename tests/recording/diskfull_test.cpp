// SPDX-License-Identifier: MIT
// A disk that is full at any byte: what the file then holds, what the element answers, and what it reports.
#include "process.h"

#include <algorithm>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>

namespace {

using VESK::Text;

constexpr std::size_t Objects = 200;

std::string Data(std::size_t n) {
    return std::string(n * 7 % 23, 'd');
}

std::vector<std::string> AllObjects() {
    std::vector<std::string> objects;
    for (std::size_t n = 0; n < Objects; ++n) {
        objects.push_back(
            ObjectText("QObject", {"QObjectType=QObject", "Count=" + std::to_string(n), "Data=" + Data(n)}));
    }
    return objects;
}

// A file in memory: the limit concerns it as it does one on a disk.
class MemoryFile {
public:
    MemoryFile() : m_iFile(memfd_create("recording", 0)) {}
    ~MemoryFile() { close(m_iFile); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    std::string Name() const { return "/proc/self/fd/" + std::to_string(m_iFile); }

private:
    const int m_iFile;
};

// Standard error, in a pipe, which the limit does not concern.
class Reports {
public:
    Reports() : m_iSaved(dup(2)) {
        if (pipe2(m_iEnds, O_NONBLOCK) == 0) {
            dup2(m_iEnds[1], 2);
            close(m_iEnds[1]);
        }
    }
    ~Reports() {
        dup2(m_iSaved, 2);
        close(m_iSaved);
        close(m_iEnds[0]);
    }
    Reports(const Reports&) = delete;
    Reports& operator=(const Reports&) = delete;

    std::string Take() const {
        char text[4096];
        const ssize_t length = read(m_iEnds[0], text, sizeof text);
        return std::string(text, length > 0 ? static_cast<std::size_t>(length) : 0);
    }

private:
    int m_iSaved;
    int m_iEnds[2];
};

struct Recorded {
    std::string answered; // the objects that were answered 1
    std::string reports;
    int error; // of the framework
};

Recorded Record(const std::string& file, const char* strict, rlim_t room) {
    Recorded result;
    const Reports reports;
    VESK::FRAMEWORK framework;
    VESK::ESerialize element;
    element.m_pFramework = &framework;
    Set(element.m_cProperties, "Name", "record");
    Set(element.m_cProperties, "Filename", file);
    Set(element.m_cProperties, "Strict", strict);
    element.Initialize();
    static const std::vector<std::string> objects = AllObjects();
    LimitFiles(room);
    for (std::size_t n = 0; n < Objects; ++n) {
        VESK::QObject object;
        Set(object.m_cProperties, "Count", std::to_string(n));
        Set(object.m_cProperties, "Data", Data(n));
        if (element.DataArrived(&object, 0) == 1) {
            result.answered += objects[n];
        }
    }
    LimitFiles(RLIM_INFINITY);
    result.reports = reports.Take();
    result.error = framework.m_bError;
    return result;
}

void CheckReport(const Recorded& recorded, const std::string& file, bool lost) {
    const std::string begin = "ERROR: ESerialize - record: Unable to store an object in " + file + ": ";
    ASSERT_EQ(recorded.reports.substr(0, begin.size()), lost ? begin : "");
    ASSERT_EQ(std::count(recorded.reports.begin(), recorded.reports.end(), '\n'), lost) << recorded.reports;
    ASSERT_EQ(recorded.error != 0, lost);
}

// The bytes of the first objects that have room together.
std::size_t WholeIn(const std::vector<std::string>& objects, std::size_t room) {
    std::size_t end = 0;
    for (std::size_t n = 0; n < objects.size() && end + objects[n].size() <= room; ++n) {
        end += objects[n].size();
    }
    return end;
}

} // namespace

// All objects that have room, and they alone were answered 1.
TEST(DiskFull, StrictHoldsWhatItAnswered) {
    const MemoryFile memory;
    const auto objects = AllObjects();
    const std::string file = memory.Name(), all = Joined(objects, Objects);
    for (std::size_t room = 0; room <= all.size(); ++room) {
        SCOPED_TRACE(room);
        const Recorded recorded = Record(file, "1", room);
        CheckReport(recorded, file, room < all.size());
        ASSERT_EQ(recorded.answered, all.substr(0, WholeIn(objects, room)));
        ASSERT_EQ(FileText(file), recorded.answered);
    }
}

// The file is the recording up to the byte where the disk was full, and the answers are as if it were not.
TEST(DiskFull, DefaultHoldsTheFrontOfTheRecording) {
    const MemoryFile memory;
    const Scratch scratch;
    const auto objects = AllObjects();
    const std::string file = memory.Name(), out = scratch.Path("out"), all = Joined(objects, Objects);
    for (std::size_t step = 0; step * 7 < all.size() + 7; ++step) {
        const std::size_t room = std::min(step * 7, all.size());
        SCOPED_TRACE(room);
        const Recorded recorded = Record(file, "0", room);
        CheckReport(recorded, file, room < all.size());
        ASSERT_EQ(recorded.answered, all);
        ASSERT_EQ(FileText(file), all.substr(0, room));
        if (step % 50 == 0) { // and fwpipe agrees
            ASSERT_EQ(Fwpipe({"recover", "--force", scratch.Write("file", FileText(file)), "-o", out}).status,
                      0);
            ASSERT_EQ(FileText(out), all.substr(0, WholeIn(objects, room)));
        }
    }
}
