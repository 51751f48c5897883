#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "service/service_exports.h"

namespace {

TEST(ServiceNumber, DecimalOnly)
{
    const struct {
        const char *Text;
        DWORD Value;
    } cases[] = {
        {"16", 16}, {"983551", 0xF01FF}, {"  3", 3}, {"+2", 2},   {"-1", 0xFFFFFFFFu}, {"0x10", 0},
        {"\"16\"", 0}, {"", 0},          {"abc", 0}, {"12ab", 12}, {"\t 7 8", 7},
    };
    for (const auto &c : cases)
        EXPECT_EQ(c.Value, ParseServiceNumber(c.Text)) << "[" << c.Text << "]";
}

TEST(ServiceDependencies, OnlyTheFirstTwoCommasSplit)
{
    const struct {
        const char *Text, *List;  // entries joined by '|'
    } cases[] = {
        {"a", "a"},         {"a,b", "a|b"},     {"a,b,c", "a|b|c"}, {"a,b,c,d", "a|b|c,d"},
        {",,a,b", ",,a|b"}, {"a,,b", "a|,b"},   {"a,", "a"},        {"", ""},
    };
    for (const auto &c : cases) {
        char buffer[64] = {0};
        std::strcpy(buffer, c.Text);
        SplitDependencies(buffer);
        std::string list;
        for (const char *p = buffer; *p; p += std::strlen(p) + 1)
            list += (list.empty() ? "" : "|") + std::string(p);
        EXPECT_EQ(c.List, list) << c.Text;
    }
}

}  // namespace
