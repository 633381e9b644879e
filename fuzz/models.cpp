// SPDX-License-Identifier: MIT
#include "models.h"

#include <algorithm>
#include <cstdlib>
#include <map>

namespace fuzz {

std::string DecodedBlock(const std::string& text, std::size_t count) {
    std::string bytes;
    for (std::size_t u = 0; u + 1 < text.size() && bytes.size() < count; u += 4) {
        unsigned int d[4] = {};
        for (std::size_t v = 0; v < 4 && u + v < text.size(); ++v) {
            d[v] = static_cast<unsigned char>(text[u + v]) - 32u;
        }
        const unsigned int b[] = {d[0] | (d[1] & 48) << 2, (d[1] & 15) | (d[2] & 60) << 2,
                                  (d[2] & 3) | d[3] << 2};
        const std::size_t whole = text.size() - u >= 4 ? 3 : text.size() - u - 1;
        const std::size_t rest = count - bytes.size();
        if (whole < 3 && whole < rest) {
            break; // a part of a group counts only when it is all that is asked for
        }
        for (std::size_t v = 0; v < 3 && v < rest; ++v) {
            bytes += static_cast<char>(b[v]);
        }
    }
    return bytes;
}

Words InFileOrder(Words words) {
#if __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
    for (unsigned int& word : words) {
        word = __builtin_bswap32(word);
    }
#endif
    return words;
}

Words ExpandedBlocks(const Words& coded) {
    Words words;
    for (std::size_t at = 0; at < coded.size();) {
        const unsigned int bitmap = coded[at++];
        if ((bitmap & 0x40000000) || (bitmap & 0x80000001) == 1) {
            return {};
        }
        for (unsigned int u = 0; u < 30; ++u) {
            const bool out = bitmap >> u & 1;
            if (!out && at == coded.size()) {
                return {};
            }
            words.push_back(!out ? coded[at++] : bitmap >> 31 ? 0 : words.back());
        }
    }
    return words;
}

Words CodedBlocks(Words words, bool backward) {
    Words coded;
    if (backward) { // the coding of the words in the opposite order, in the opposite order
        std::reverse(words.begin(), words.end());
    }
    for (std::size_t first = 0; first < words.size(); first += 30) {
        Words zeroForm = {0x80000000}, repeatForm = {0};
        for (std::size_t u = first; u < first + 30; ++u) {
            const unsigned int bit = 1u << (u - first);
            const bool zero = words[u] == 0, repeat = u > first && words[u] == words[u - 1];
            zeroForm[0] |= zero ? bit : 0;
            zeroForm.insert(zeroForm.end(), !zero, words[u]);
            repeatForm[0] |= repeat ? bit : 0;
            repeatForm.insert(repeatForm.end(), !repeat, words[u]);
        }
        const Words& shorter = repeatForm.size() < zeroForm.size() ? repeatForm : zeroForm;
        coded.insert(coded.end(), shorter.begin(), shorter.end());
    }
    if (backward) {
        std::reverse(coded.begin(), coded.end());
    }
    return coded;
}

// What a line of at most 255 characters is, the rest of a longer one being the next; a zero byte ends its text.
std::string Piece(const std::string& text, std::size_t& at) {
    const std::size_t newline = text.find('\n', at);
    const std::size_t size = newline == std::string::npos ? text.size() - at : newline + 1 - at;
    const std::string piece = text.substr(at, std::min<std::size_t>(size, 255));
    at += piece.size();
    return piece.c_str();
}

std::string Stripped(std::string piece) {
    if (!piece.empty() && piece.back() == '\n') {
        piece.pop_back();
    }
    return piece;
}

bool ExpectedSection(const std::string& text, const std::string& section, Entries& entries) {
    bool inside = false;
    for (std::size_t at = 0; at < text.size();) {
        const std::string line = Stripped(Piece(text, at));
        if (!inside) {
            inside = line == "[" + section + "]";
        } else if (line[0] == '[') {
            break;
        } else if (line.find('=') != std::string::npos) {
            Put(entries, {section, line.substr(0, line.find('=')), line.substr(line.find('=') + 1)});
        }
    }
    return inside;
}

ExpectedPipe::ExpectedPipe(const std::string& text) {
    for (std::size_t at = 0; at < text.size();) {
        std::string line = Piece(text, at);
        line.resize(line.find_last_not_of("\r\n") + 1);
        std::vector<std::string> tokens;
        for (std::size_t end = 0, begin; (begin = line.find_first_not_of(" \t", end)) != std::string::npos;) {
            end = std::min(line.find_first_of(" \t", begin), line.size());
            tokens.push_back(line.substr(begin, end - begin));
        }
        if (!tokens.empty() && tokens[0][0] != '#') {
            Line(tokens);
        }
    }
}

void ExpectedPipe::Line(const std::vector<std::string>& tokens) {
    static const std::map<std::string, std::size_t> arguments = {
        {"plugin", 1}, {"fwprop", 2},  {"element", 1}, {"property", 2}, {"config", 2},
        {"pipe", 1},   {"connect", 4}, {"sink", 1},    {"source", 1}};
    const auto keyword = arguments.find(tokens[0]);
    wellFormed =
        wellFormed && keyword != arguments.end() && tokens.size() > keyword->second && tokens.size() <= 14;
    if (wellFormed) {
        elements += tokens[0] == "element" || tokens[0] == "pipe";
        connections += tokens[0] == "connect";
        sink = tokens[0] == "sink" ? tokens[1] : sink;
    }
}

bool ExpectedList(const std::string& text, Entries& entries) {
    Reader reader(text);
    const char* line = reader.ReadLine();
    const char* const count = line ? std::strchr(line, '=') : nullptr;
    const long long number = count ? std::strtoll(count + 1, nullptr, 10) : 0;
    const auto lines = static_cast<unsigned short>(std::clamp<long long>(number, INT32_MIN, INT32_MAX));
    for (unsigned int u = 0; count && u < lines; ++u) {
        line = reader.ReadLine();
        const char* const equals = line ? std::strchr(line, '=') : nullptr;
        if (!equals) {
            return false;
        }
        Put(entries, {"Standard", {line, equals}, equals + 1});
    }
    return count;
}

int WholeObjects(std::string text, int most) {
    text.resize(text.rfind('\n') + 1);
    const std::string head = "m_b2PropertyCount=";
    for (int objects = 0;; ++objects) {
        Input in(reinterpret_cast<const unsigned char*>(text.data()), text.size());
        const std::string type = in.UpTo('\n'), count = in.UpTo('\n');
        const std::string digits = count.compare(0, head.size(), head) == 0 ? count.substr(head.size()) : "";
        unsigned long left = std::strtoul(digits.c_str(), nullptr, 10);
        bool whole = text.size() > 0 && type.size() < 32 && type.find('\0') == std::string::npos &&
                     !digits.empty() && digits.find_first_not_of("0123456789") == std::string::npos &&
                     left <= 65520;
        for (; whole && left > 0; --left) {
            const std::string line = in.UpTo('\n');
            whole = line.find('=') != std::string::npos && line.find('\0') == std::string::npos;
        }
        if (!whole || objects == most) {
            return objects;
        }
        text = in.Rest();
    }
}

constexpr unsigned long long Most = 1ULL << 63;

Number::Number(const char* text) {
    text += std::strspn(text, " \t\n\v\f\r");
    negative = *text == '-';
    text += *text == '-' || *text == '+';
    for (; *text >= '0' && *text <= '9'; ++text) {
        const auto digit = static_cast<unsigned int>(*text - '0');
        magnitude = magnitude > (Most - digit) / 10 ? Most : magnitude * 10 + digit;
    }
}

int Number::Signed() const {
    return static_cast<int>(std::clamp<long long>(Long(), INT32_MIN, INT32_MAX));
}

unsigned int Number::Unsigned() const {
    return magnitude > UINT32_MAX ? UINT32_MAX : static_cast<unsigned int>(Long());
}

long long Number::Long() const {
    return negative           ? static_cast<long long>(0 - magnitude)
           : magnitude < Most ? static_cast<long long>(magnitude)
                              : INT64_MAX;
}

} // namespace fuzz
