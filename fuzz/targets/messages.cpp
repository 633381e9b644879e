// SPDX-License-Identifier: MIT
// Input: lines that become names, types, formats' values and paths. Each message stands as it is composed here: a
// text from outside is never a format, and is cut only where that is said.
#include "../targets.h"

void fuzz::Messages(Input& in) {
    OwnFramework framework;
    const ExactText type(in.Line()), name(in.Line()), text(in.Line());
    VESK::EDevNull element;
    element.m_pFramework = &framework;
    element.m_iDebug = 1;
    element.m_cProperties.SetProperty(VESK::Key::EObjectType, type.Chars(), VESK::Section::Standard);
    element.m_cProperties.SetProperty(VESK::Key::Name, name.Chars(), VESK::Section::Standard);
    const std::string t = type.Chars(), n = name.Chars(), x = text.Chars();
    const std::string origin = t.substr(0, 31) + " - " + n.substr(0, 31) + ": ";
    std::string expected;

    element.Message(1, "%s %d\n", text.Chars(), 7);
    expected += origin + x + " 7\n";
    element.ErrorMessage("%s\n", text.Chars());
    expected += "ERROR: " + origin + x + "\n";
    CLAIM(element.Run() == 0);
    expected += "EObject::Run: Should not be called: " + t.substr(0, 63) + ".\n";
    CLAIM(element.DataArrived(nullptr, 3) == 0);
    expected += "ERROR: " + origin + "DataArrived(3): QObject pointer is NULL\n";
    const std::string failed = "FRAMEWORK::CreateObject: Could not instantiate: " + x + "\n";
    CLAIM(framework.CreateObject(text.Chars()) == nullptr);
    expected += failed;
    CLAIM(framework.AddPlugin(text.Chars()) == (x == "libfwlib.so"));
    CLAIM(Printed().compare(0, expected.size(), expected) == 0);
    const bool fits = !x.empty() && x.size() < VESK::FWPLUGIN::PathSize;
    const std::string reason = fits ? x : "the path is empty or longer than 255 characters";
    CLAIM(x == "libfwlib.so" ||
          Printed().substr(expected.size()) == "FWPLUGIN: dlopen() Error: " + reason + "\n");
    std::FILE* const pFile = OpenFile("f", "w");
    VESK::fwfprintf(reinterpret_cast<char*>(pFile), "%s=%s", name.Chars(), text.Chars());
    std::fclose(pFile);
    CLAIM(files["f"] == n + "=" + x);
}
