#include "common/utf8.h"

#include <gtest/gtest.h>

namespace qvx {
namespace {

TEST(Utf8, ShortestFormsAndBack) {
    const struct {
        std::string_view bytes;
        TextView text;
    } cases[] = {
        {"a\x7F", u"a\x7F"},
        {"\xC2\x80\xDF\xBF", u"\u0080\u07FF"},
        {"\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF", u"\u0800\xD7FF\uE000\uFFFF"},
        {"\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", u"\xD800\xDC00\xDBFF\xDFFF"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(DecodeUtf8(c.bytes), c.text);
        EXPECT_EQ(EncodeUtf8(c.text), c.bytes);
    }
    for (const TextView alone : {u"\xD800", u"\xDBFF", u"\xDC00", u"\xDFFF"}) {
        EXPECT_EQ(EncodeUtf8(alone), "\xEF\xBF\xBD");
    }
}

TEST(Utf8, RefusesWhatIsNot) {
    for (const std::string_view bytes :
         {"\x80", "\xBF", "\xC1\xBF", "\xC2", "\xC2\x7F", "\xC2\xC0", "\xE0\x9F\xBF", "\xE1\x80", "\xED\xA0\x80",
          "\xED\xBF\xBF", "\xF0\x8F\xBF\xBF", "\xF1\x80\x80", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80"}) {
        EXPECT_FALSE(DecodeUtf8(bytes)) << testing::PrintToString(bytes);
    }
}

}  // namespace
}  // namespace qvx
