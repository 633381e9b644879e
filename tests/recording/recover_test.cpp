// SPDX-License-Identifier: MIT
#include "process.h"

#include <cstring>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace {

std::string Report(const std::string& file, std::size_t count, std::size_t bytes, const std::string& out) {
    return file + ": " + std::to_string(count) + " whole object" + (count == 1 ? ", " : "s, ") +
           std::to_string(bytes) + " bytes, kept in " + out + "\n";
}

unsigned int Mode(const std::string& path) {
    struct stat status = {};
    stat(path.c_str(), &status);
    return status.st_mode & 07777;
}

// In memory, where bringing a file to the disk takes no time.
struct Folder {
    Folder() = default;
    ~Folder() { std::filesystem::remove_all(path); }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    static std::string Make() {
        std::string name = access("/dev/shm", W_OK) == 0 ? "/dev/shm" : FWLIB_TEST_SCRATCH;
        name += "/scratch-XXXXXX";
        return mkdtemp(name.data());
    }
    std::string Write(const std::string& name, const std::string& text) const {
        std::ofstream(path + "/" + name, std::ios::binary) << text;
        return path + "/" + name;
    }
    std::size_t Entries() const {
        return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(path), {}));
    }

    const std::string path = Make(), file = path + "/file", out = path + "/out";
};

} // namespace

TEST(Recover, KeepsTheWholeObjectsWhereverTheFileIsCut) {
    const Folder folder;
    const auto objects = SampleObjects();
    const std::string all = Joined(objects, objects.size());
    std::size_t count = 0, end = 0;
    for (std::size_t cut = 0; cut <= all.size(); ++cut) {
        SCOPED_TRACE(cut);
        if (count < objects.size() && cut == end + objects[count].size()) {
            end += objects[count++].size();
        }
        folder.Write("file", all.substr(0, cut));
        const Outcome outcome = Fwpipe({"recover", "--force", folder.file, "-o", folder.out});
        const char* const reason =
            all[cut - (cut > 0)] == '\n' ? "its last lines are missing" : "its last line is cut";
        const std::string rest = cut == end ? folder.file + ": nothing to cut\n"
                                            : folder.file + ": cut at byte " + std::to_string(end) + ", " +
                                                  std::to_string(cut - end) +
                                                  " bytes: no whole object there: " + reason + "\n";
        ASSERT_EQ(outcome.out, Report(folder.file, count, end, folder.out) + rest);
        ASSERT_EQ(outcome.status, 0);
        ASSERT_EQ(outcome.err, "");
        ASSERT_EQ(FileText(folder.out), all.substr(0, end));
        ASSERT_EQ(FileText(folder.file).size(), cut);
        if (cut == end + 1) { // once for each result
            const Outcome again = Fwpipe({"recover", "--force", folder.out});
            const std::string name = folder.out + ".recovered";
            ASSERT_EQ(again.out, Report(folder.out, count, end, name) + folder.out + ": nothing to cut\n");
            ASSERT_EQ(FileText(name), all.substr(0, end));
        }
    }
    EXPECT_EQ(count, objects.size());
    EXPECT_EQ(folder.Entries(), 3U) << "a temporary is left";
}

// The tools and the strict element agree on what is whole, and on the reason why the rest is not.
TEST(Recover, StopsAtTheFirstBrokenObject) {
    const struct {
        std::string object;
        const char* reason;
    } cases[] = {
        {std::string("QObject\nm_b2PropertyCount=1\na=\0\n", 31), "a line holds a zero byte"},
        {"QObject\nm_b2PropertyCount=1\nab\n", "a property line holds no \"=\""},
        {"QObject\nm_b2PropertyCount=2\na=b\n", "a property line holds no \"=\""}, // the next type line
        {"QObject\nm_b2PropertyCount=65536\n", "a count line holds no "},
        {"QObject\nm_b2PropertyCount=1x\na=b\n", "a count line holds no "},
        {"QObject\nm_b2PropertyCount=\n", "a count line is not one"},
        {"QObject\nm_b2PropertyCount=-1\n", "a count line is not one"},
        {"QObject\nm_b2PropertyCoun=0\n", "a count line is not one"},
        {std::string(32, 't') + "\nm_b2PropertyCount=0\n", "a type line is longer than 31 characters"},
    };
    const Folder folder;
    const std::string front = ObjectText("QObject", {"QObjectType=QObject", "Count=7"});
    const std::string begin = std::to_string(front.size());
    const std::string pipe = folder.Write(
        "pipe", "plugin libfwlib.so\nelement EDeserialize\nproperty Name replay\nproperty Strict 1\nproperty "
                "Filename " +
                    folder.file + "\nelement ESerialize\nproperty Name record\nproperty Filename " +
                    folder.out + "\nsink replay\nconnect replay 0 record 0\n");
    for (const auto& one : cases) {
        SCOPED_TRACE(one.reason + (":\n" + one.object));
        folder.Write("file", front + one.object + front + front);
        const Outcome dumped = Fwpipe({"dump", "--oneline", folder.file});
        EXPECT_EQ(dumped.status, 1);
        EXPECT_EQ(dumped.out, "0 @0 QObject QObjectType=QObject Count=7\n1 object\n");
        const std::string place = begin + " of " + folder.file + ": ",
                          told = "fwpipe: no whole object at byte " + place;
        ASSERT_EQ(dumped.err.compare(0, told.size() + std::strlen(one.reason), told + one.reason), 0)
            << dumped.err;
        const std::string reason = dumped.err.substr(told.size());
        const Outcome replayed = Fwpipe({"run", "--drain", "--quiet", pipe});
        EXPECT_EQ(replayed.status, 1);
        EXPECT_EQ(replayed.err, "ERROR: EDeserialize - replay: Run(): no whole object at byte " + place +
                                    reason + "fwpipe: " + pipe + " ran, but errors were reported\n");
        EXPECT_EQ(FileText(folder.out), front);
        const Outcome recovered = Fwpipe({"recover", folder.file, "-o", folder.out, "--force"});
        EXPECT_EQ(recovered.status, 0);
        EXPECT_NE(recovered.out.find(": " + reason), std::string::npos) << recovered.out;
        EXPECT_EQ(FileText(folder.out), front);
    }
}

TEST(Recover, ReplacesTheFileInPlace) {
    const Folder folder;
    const std::string whole = ObjectText("QObject", {"a=b"});
    const std::string link = folder.path + "/link";
    folder.Write("file", whole + "QObject\n");
    chmod(folder.file.c_str(), 0640);
    std::filesystem::create_symlink("file", link);
    EXPECT_EQ(Fwpipe({"recover", "--in-place", link}).status, 0);
    EXPECT_EQ(FileText(folder.file), whole);
    EXPECT_EQ(Mode(folder.file), 0640U);
    EXPECT_TRUE(std::filesystem::is_symlink(link));

    struct stat before = {}, after = {};
    stat(folder.file.c_str(), &before);
    EXPECT_EQ(Fwpipe({"recover", "--in-place", folder.file}).status, 0);
    stat(folder.file.c_str(), &after);
    EXPECT_EQ(before.st_ino, after.st_ino) << "nothing was to be cut";

    folder.Write("file", "a picture, say\n");
    EXPECT_EQ(Fwpipe({"recover", "--in-place", folder.file}).status, 1);
    EXPECT_EQ(FileText(folder.file), "a picture, say\n");
    EXPECT_EQ(Fwpipe({"recover", "--in-place", "--force", folder.file}).status, 0);
    EXPECT_EQ(FileText(folder.file), "");
    EXPECT_EQ(folder.Entries(), 2U) << "a temporary is left";
}

TEST(Recover, ChangesNothingWhenItFails) {
    const Folder folder;
    const std::string whole = ObjectText("QObject", {"a=" + std::string(2000, 'b')}),
                      text = whole + "QObject\n";
    folder.Write("file", text);
    chmod(folder.file.c_str(), 0600);
    folder.Write("out", "precious");
    const std::string other = folder.path + "/other", missing = folder.path + "/missing";
    std::filesystem::create_hard_link(folder.file, other);
    const std::vector<std::vector<std::string>> refused = {
        {folder.file, "-o", folder.out},
        {folder.file, "-o", folder.file, "--force"},
        {folder.file, "-o", other, "--force"}, // the same file
        {folder.file, "-o", missing + "/out"},
        {folder.file, "-o", "/dev/null", "--force"},
        {missing},
        {folder.path},
    };
    for (auto arguments : refused) {
        SCOPED_TRACE(testing::PrintToString(arguments));
        arguments.insert(arguments.begin(), "recover");
        const Outcome outcome = Fwpipe(arguments);
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.out, "");
        EXPECT_EQ(outcome.err.find("fwpipe: "), 0U) << outcome.err;
    }
    EXPECT_EQ(Fwpipe({"recover", folder.file, "-o", other, "--in-place"}).status, 2);
    const auto full = [] { LimitFiles(1000); };
    EXPECT_EQ(Fwpipe({"recover", folder.file, "--in-place"}, "", full).status, 1);
    EXPECT_EQ(Fwpipe({"recover", folder.file, "-o", missing}, "", full).status, 1);
    EXPECT_EQ(FileText(folder.file), text);
    EXPECT_EQ(FileText(folder.out), "precious");
    EXPECT_EQ(folder.Entries(), 3U) << "a temporary or a part of the result is left";

    EXPECT_EQ(Fwpipe({"recover", folder.file, "-o", folder.out, "--force"}).status, 0);
    EXPECT_EQ(FileText(folder.out), whole);
    EXPECT_EQ(Mode(folder.out), 0600U) << "no more readable than the input";
}
