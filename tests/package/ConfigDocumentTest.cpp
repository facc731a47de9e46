#include "package/ConfigDocument.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <rapidxml/rapidxml.hpp>

#include "package/EffectVersion.h"
#include "package/FileAccess.h"

namespace quillon::test {
namespace {

std::string configText;

std::string TextOfConfig(const std::wstring& name) {
    return name == L"config.xml" ? configText : "<wrong";
}

// Takes the place of a package with this config.xml.
class ConfigDocumentTest : public ::testing::Test {
protected:
    ConfigDocumentTest() { FileTextHook = TextOfConfig; }

    static std::string ValueOf(const std::wstring& key, const std::string& text) {
        configText = text;
        return ConfigDocument().GetValue(key);
    }
    static std::string ParseErrorOf(const std::string& text) {
        configText = text;
        try {
            const ConfigDocument document;
            return "";
        } catch (const rapidxml::parse_error& error) {
            return error.what();
        }
    }
};

TEST_F(ConfigDocumentTest, FindsElementsAtTheTopLevel) {
    EXPECT_EQ(ValueOf(L"FXNAME", "<FXNAME>ab&#0;cd</FXNAME>"), "ab");
    EXPECT_EQ(ValueOf(L"FXNAME", "<FXNAME>one</FXNAME><FXNAME>two</FXNAME>"), "one");
    EXPECT_EQ(ValueOf(L"FXNAME", "<FXNAME><![CDATA[Name]]></FXNAME>"), "");
    EXPECT_EQ(ValueOf(L"FXNAME", "<effect><FXNAME>Name</FXNAME></effect>"), "") << "inside of another element";
}

std::string Nested(int levels, const std::string& opening, const std::string& closing) {
    std::string text;
    for (int i = 0; i < levels; ++i) text += opening;
    for (int i = 0; i < levels; ++i) text += closing;
    return text;
}

TEST_F(ConfigDocumentTest, TakesDeepTextAsAParseErrorInsteadOfOverflowing) {
    EXPECT_EQ(ParseErrorOf("popa"), "expected <");
    EXPECT_EQ(ParseErrorOf(Nested(256, "<a>", "</a>")), "");
    EXPECT_EQ(ParseErrorOf(Nested(257, "<a>", "</a>")), "nested too deeply");
    const char* const tooDeep = "nested too deeply";
    const struct {
        const char* repeated;
        const char* error;
    } cases[] = {
        // What looks like the end of an element, but is not.
        {"<a b='</a>'>", tooDeep},
        {"<a b\"='</a>' c='\"'>", tooDeep},
        {"<a><!--</a>-->", tooDeep},
        {"<a><![CDATA[></a>]]>", tooDeep},
        {"<a><?></a>?>", tooDeep},
        {"<a><!DOCTYPE [></a>]>", tooDeep},
        // What does end one.
        {"<a></a>", ""},
        {"<a><!-></a>", ""},
        {"<a><!DOCTYPE ]></a>", ""},
        {"<a<b/></a>", "expected element name"},
    };
    for (const auto& [repeated, error] : cases) EXPECT_EQ(ParseErrorOf(Nested(50000, repeated, "")), error) << repeated;
}

TEST_F(ConfigDocumentTest, ReadsDecimalIntegers) {
    const struct {
        const char* text;
        std::int32_t value;
    } cases[] = {
        {" \n\t-12abc", -12}, {"0x2000020", 0}, {"- 5", 0}, {"2147483648", INT32_MAX}, {"-2147483649", INT32_MIN},
    };
    for (const auto& [text, value] : cases) {
        configText = "<FLAGS>" + std::string(text) + "</FLAGS>";
        EXPECT_EQ(ConfigDocument().GetInteger(L"FLAGS"), value) << text;
    }
    EXPECT_EQ(ConfigDocument().GetInteger(L"FLAGS2"), 0);
}

TEST_F(ConfigDocumentTest, PacksTheVersionAndCutsItForTheHost) {
    const struct {
        const char *major, *minor, *build, *stage;
        std::uint32_t packed, host;
    } cases[] = {
        {"1", "2", "0", "3", 0xC0000081, 0x00090600},
        {"9", "0", "0", "0", 0x00000009, 0x04080000},     // split over two fields
        {"0", "0", "0", "7", 0xC0000000, 0x00000600},     // stage keeps two bits
        {"0", "31", "0", "0", 0x000007C0, 0x00078000},    // minor loses its fifth bit
        {"0", "0", "1023", "0", 0x00FFC000, 0x000001FF},  // build loses its tenth bit
        {"64", "256", "65536", "4", 0x00000000, 0x00000000},
        {"-1", "-1", "-1", "-1", 0xFFFFFFFF, 0x1C3F87FF},
    };
    for (const auto& [major, minor, build, stage, packed, host] : cases) {
        SCOPED_TRACE(major);
        configText = std::string("<MAJOR_VERSION>") + major + "</MAJOR_VERSION><MINOR_VERSION>" + minor +
                     "</MINOR_VERSION><BUILD_VERSION>" + build + "</BUILD_VERSION><STAGE_VERSION>" + stage +
                     "</STAGE_VERSION>";
        const EffectVersion version = EffectVersion::FromConfig(ConfigDocument());
        EXPECT_EQ(version.word, packed);
        EXPECT_EQ(version.hostWord(), host);
    }
}

}  // namespace
}  // namespace quillon::test
