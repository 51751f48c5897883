#include <gtest/gtest.h>

#include <string>

#include "entry/printer_inf.h"
#include "files/file_spec.h"
#include "test_support.h"

namespace {

// The demonstration INF of the source tree, through Wine's drive Z:.
std::string DemonstrationInf()
{
    std::string path = "Z:" TOVREL_DEMO_INF;
    for (char &c : path)
        if (c == '/')
            c = '\\';
    return ReadText(path);
}

// A printer INF whose DestinationDirs name every id of the table.
std::string EveryIdInf()
{
    std::string inf = "[Version]\r\nSignature=\"$Chicago$\"\r\nClass=Printer\r\n[Manufacturer]\r\nAcme=Acme\r\n"
                      "[DestinationDirs]\r\nDefaultDestDir=11\r\n";
    for (int id : InfDirectoryIdList())
        inf += "Section" + std::to_string(id) + "=" + std::to_string(id) + "\r\n";
    return inf;
}

// An open resolves at once only the ids its INF can name, the others on
// their first lookup; either way every lookup reads what resolving all of
// them at the open gives.
TEST(DirectoryIds, ResolvedOnDemandReadAsAllAtOnce)
{
    const struct {
        const char *Name;
        std::string Inf;
        bool AllNamed;
    } cases[] = {
        {"demonstration", DemonstrationInf(), false},
        {"every id", EveryIdInf(), true},
    };
    for (const auto &c : cases) {
        std::string path = ScratchDirectory() + "ids.inf";
        WriteText(path, c.Inf);
        CPrinterInf onDemand, allAtOnce;
        ASSERT_EQ(1, onDemand.Open(path.c_str())) << c.Name;
        ASSERT_EQ(1, allAtOnce.Open(path.c_str())) << c.Name;
        allAtOnce.DirectoryIds.ResolveAll();
        EXPECT_EQ(c.AllNamed, onDemand.DirectoryIds.Pending.empty()) << c.Name;
        EXPECT_EQ(0u, onDemand.DirectoryIds.Pending.count(DIRID_SYSTEM)) << c.Name << ": named, so resolved";
        for (int id : InfDirectoryIdList()) {
            char lazy[MAX_PATH] = "unset", eager[MAX_PATH] = "unset";
            EXPECT_EQ(allAtOnce.FindDirectoryId(id, eager), onDemand.FindDirectoryId(id, lazy)) << c.Name << id;
            EXPECT_STREQ(eager, lazy) << c.Name << " " << id;
        }
        EXPECT_TRUE(onDemand.DirectoryIds.Pending.empty()) << c.Name;
        char out[MAX_PATH] = "unset";
        EXPECT_EQ(0, onDemand.FindDirectoryId(99, out));
        EXPECT_STREQ("unset", out);
    }
}

}  // namespace
