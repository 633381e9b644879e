// SPDX-License-Identifier: MIT
#include "support/support.h"

#include <gtest/gtest.h>

using namespace VESK;

namespace {

std::string Repeated(std::size_t count, char c) {
    return std::string(count, c);
}

TEST(Config, ReadsTheFirstBlockOfTheSectionToTheLetter) {
    const std::string key250 = Repeated(250, 'k'), name253 = Repeated(253, 'n');
    const struct {
        std::string text, section;
        int answer;
        std::string entries;
    } readings[] = {
        {"early=1\n[Other]\nb=2\n[Standard]\na=1\n\na=2\nc=3\nremark\nremark d=4\n[Standard]\na=9\n",
         "Standard", 1, "Standard.a=2 Standard.c=3 Standard.remark d=4"},
        {"[Camera]\nkey = value \n expr=a=b\n=v\n[Camera\nx=1\n", "Camera", 1,
         "Camera.key = value  Camera. expr=a=b Camera.=v"},
        {"[Standard]\r\na=1\r\n", "Standard", 0, ""},
        {"[Standard]\na=1\r\n", "Standard", 1, "Standard.a=1\r"},
        {" [Standard]\n[Standard] \n[standard]\na=1\n", "Standard", 0, ""},
        {"a=1\n[Camera]", "Camera", 1, ""},
        {"[S]\na=1\nb=2", "S", 1, "S.a=1 S.b=2"}, // the last line need not end
        {"", "Standard", 0, ""},
        {"[]\na=1\n", "", 1, ".a=1"},
        {"[S]\n" + key250 + "=" + Repeated(4, 'v') + "\nb=1\n", "S", 1, "S." + key250 + "=vvvv S.b=1"},
        {"[S]\n" + key250 + "=" + Repeated(49, 'v') + "\n", "S", 1, "S." + key250 + "=vvvv"},
        {"[S]\n" + Repeated(255, 'x') + "a=1\n", "S", 1, "S.a=1"}, // the rest of a long line is a line
        {"[" + name253 + "]\na=1\n", name253, 1, name253 + ".a=1"},
        {"[" + name253 + "n]\na=1\n", name253 + "n", 0, ""},
        {"[S]\nk=" + Repeated(20000000, 'x') + "\nl=1\n", "S", 1, "S.k=" + Repeated(253, 'x') + " S.l=1"},
        {Repeated(20000000, '['), "S", 0, ""},
    };
    const Scratch scratch;
    for (const auto& reading : readings) {
        PROPERTIES list;
        EXPECT_EQ(list.ReadConfig(scratch.Write("c", reading.text).data(), Text(reading.section.c_str())),
                  reading.answer);
        EXPECT_EQ(Entries(list), reading.entries);
    }
}

TEST(Config, WhatCannotBeReadAnswersZero) {
    const Scratch scratch;
    PROPERTIES list;
    Set(list, "a", "1");
    EXPECT_EQ(list.ReadConfig(scratch.Path(".").data(), Section::Standard),
              0); // a folder opens but does not read
    EXPECT_EQ(list.ReadConfig(scratch.Path("missing").data(), Section::Standard), 0);
    EXPECT_EQ(list.ReadConfig(nullptr, Section::Standard), 0);
    EXPECT_EQ(Entries(list), "Standard.a=1");
}

TEST(Config, SavesABlockForEachSection) {
    const Scratch scratch;
    const std::string path = scratch.Path("saved");
    PROPERTIES list;
    EXPECT_EQ(list.SaveConfig(Text(path.c_str())), 0);
    EXPECT_FALSE(std::filesystem::exists(path));
    Set(list, "Name", "src");
    Set(list, "Rate", "25");
    Set(list, "Gain", "3", "Camera");
    Set(list, "lost", "1", "");
    Set(list, "Mode", " fast=1 ");
    Set(list, "Zoom", "4", "Camera");
    const std::string before = Entries(list);
    EXPECT_EQ(list.SaveConfig(Text(path.c_str())), 1);
    EXPECT_EQ(FileText(path), "\n[Standard]\nName=src\nRate=25\nMode= fast=1 \n\n[Camera]\nGain=3\nZoom=4\n");
    EXPECT_EQ(Entries(list), before);
    EXPECT_EQ(list.SaveConfig(Text("/dev/full")), 0);
    EXPECT_EQ(list.SaveConfig(scratch.Path("no/folder").data()), 0);
}

TEST(Config, SavesLongLinesWhole) {
    const Scratch scratch;
    const std::string path = scratch.Path("saved"), section = Repeated(1019, 's');
    for (const std::size_t length :
         {501u, 502u, 1011u, 1012u, 5000u}) { // 512 and 1,024 with key, signs and newline
        PROPERTIES list;
        Set(list, "0123456789", Repeated(length, 'v'), section.c_str());
        EXPECT_EQ(list.SaveConfig(Text(path.c_str())), 1);
        EXPECT_EQ(FileText(path), "\n[" + section + "]\n0123456789=" + Repeated(length, 'v') + "\n");
    }
}

} // namespace
