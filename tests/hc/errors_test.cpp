#include "hc_test.h"

namespace {

using ErrorHandling = HcTest;

TEST_F(ErrorHandling, MisuseIsReportedWithTheFunctionNameAndChangesNothing) {
    HC_Create_Segment("/a");
    struct {
        const char* what;
        void (*call)();
        const char* message;
    } const rows[] = {
        {"close with nothing open", [] { HC_Close_Segment(); },
         "HC_Close_Segment: no segment is open"},
        {"close geometry with a segment open",
         [] {
             HC_Open_Segment("/a");
             HC_Close_Geometry();
             HC_Close_Segment();
         },
         "HC_Close_Geometry: no geometry item is open"},
        {"find with no search", [] { HC_Find_Contents(nullptr, nullptr); },
         "HC_Find_Contents: no contents search has been begun"},
        {"count with no search", [] { HC_Show_Contents_Count(nullptr); },
         "HC_Show_Contents_Count: no contents search has been begun"},
        {"end with no search", [] { HC_End_Contents_Search(); },
         "HC_End_Contents_Search: no contents search has been begun"},
        {"open a dead key",
         [] {
             HC_Open_Segment_By_Key(-987654);
             HC_Close_Segment();
         },
         "HC_Open_Segment_By_Key: invalid key FFFFFFFFFFF0EDFA"},
        {"open geometry on a segment",
         [] {
             HC_Open_Geometry(HC_Create_Segment("/a"));
             HC_Close_Geometry();
         },
         "HC_Open_Geometry: key FFFFFFFFFFFFFFFD is not a geometry item"},
        {"bad shell",
         [] {
             HC_POINT p[1] = {{0, 0, 0}};
             int faces[] = {3, 0, 0, 5};
             HC_Insert_Shell(1, p, 4, faces);
         },
         "HC_Insert_Shell: face list entry 3 names no point"},
        {"short face list",
         [] {
             HC_POINT p[3] = {};
             int faces[] = {-2147483647 - 1, 0};
             HC_Insert_Shell(3, p, 2, faces);
         },
         "HC_Insert_Shell: face list entry 0 does not fit the list"},
        {"unparsable options", [] { HC_Set_Color("faces=(red"); },
         "HC_Set_Color: cannot understand the options \"faces=(red\""},
        {"unset what is not set", [] { HC_UnSet_Visibility(); },
         "HC_UnSet_Visibility: no visibility is set here"},
    };
    for (const auto& row : rows) {
        row.call();
        auto errors = TakeErrors();
        ASSERT_EQ(errors.size(), 1u) << row.what;
        EXPECT_EQ(errors[0], row.message) << row.what;
    }
    HC_Open_Segment("/");
    EXPECT_EQ(Types("...", "everything"), std::vector<std::string>{"segment"});
    HC_Close_Segment();
}

TEST_F(ErrorHandling, NullPointersAndEmptyTextsAreSafe) {
    HC_Open_Segment(nullptr); // a nameless segment, like ""
    HC_Close_Segment();
    EXPECT_EQ(HC_Show_Existence(nullptr), 0) << "no filter counts nothing";
    HC_Begin_Contents_Search(nullptr, nullptr);
    EXPECT_TRUE(HC_Find_Contents(nullptr, nullptr));
    HC_End_Contents_Search();
    HC_Show_Key_Type(HC_Create_Segment("/"), nullptr);
    HC_Parse_String(nullptr, nullptr, 0, nullptr);
    EXPECT_EQ(HC_Insert_Polyline(1, nullptr), 0);
    TakeErrors();
}

TEST_F(ErrorHandling, LongTextsAreCutAtTheBufferSize) {
    std::string name(6000, 'n');
    HC_KEY key = HC_Create_Segment(("/" + name).c_str());
    char path[HC_TEXT_MAX];
    HC_Show_Segment(key, path);
    EXPECT_EQ(std::string(path), "/" + name.substr(0, HC_TEXT_MAX - 2));
}

TEST_F(ErrorHandling, TheDefaultHandlerPrintsOneLine) {
    HC_Define_Error_Handler(nullptr);
    testing::internal::CaptureStderr();
    HC_Close_Segment();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "HC_Close_Segment: no segment is open\n");
}

} // namespace
