#include "gpu/FragmentRewriting.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace quillon {
namespace {

using std::string_literals::operator""s;

const std::string kMain = "\nvoid main() { repl_main(); gl_FragColor = gl_FragColor.argb; }";
const std::string k2D = "vec4 repl_texture2D(sampler2D a,vec2 b) { return texture2D(a,b).SWIZZLE; }\n";
const std::string kLod = "vec4 repl_texture2DLod(sampler2D a,vec2 b,float c) { return texture2DLod(a,b,c).SWIZZLE; }\n";
const std::string kCube =
    "vec4 repl_textureCube(sampler2D a,vec3 b) { vec2 uv = vec2( (atan( b.x, b.z ) + 3.141526f)/6.283052f, "
    "acos(b.y)/3.141526f ); return texture2D(a,uv).SWIZZLE; }\n";

struct RewriteCase {
    const char* name;
    std::string source;
    std::string expected;
};

const RewriteCase kCases[] = {
    // main
    {"plain", "void main() {}", "void repl_main() {}" + kMain},
    {"all_white_space", "void\vmain\f\r\n\t (){}", "void\vrepl_main\f\r\n\t (){}" + kMain},
    {"comment_before_bracket", "void main/**/() {}", "void main/**/() {}"},
    {"comment_takes_the_first_hit", "// main (see below)\nvoid main() {}",
     "// repl_main (see below)\nvoid main() {}" + kMain},
    {"only_the_first", "void main() {} void main() {}", "void repl_main() {} void main() {}" + kMain},
    {"longer_words", "float domain() {} void main_color() {} void main() {}",
     "float domain() {} void main_color() {} void repl_main() {}" + kMain},
    {"at_the_start", "main() {}", "main() {}"},
    {"bracket_before_is_no_white_space", "(main() +main() *main()", "(main() +main() *main()"},
    {"byte_above_7F_is_no_white_space", "\xA0main() {}", "\xA0main() {}"},
    {"byte_above_7F_after", "void main\x85() {}", "void main\x85() {}"},
    {"at_the_end", "void main", "void main"},
    // texture2D
    {"after_each_allowed_byte", "(texture2D(+texture2D(-texture2D(/texture2D(*texture2D(=texture2D(\ttexture2D(",
     k2D + "(repl_texture2D(+repl_texture2D(-repl_texture2D(/repl_texture2D(*repl_texture2D(=repl_texture2D("
           "\trepl_texture2D("},
    {"after_other_bytes",
     ",texture2D({texture2D(;texture2D(!texture2D(<texture2D(>texture2D(?texture2D(:texture2D("
     "%texture2D([texture2D(",
     ",texture2D({texture2D(;texture2D(!texture2D(<texture2D(>texture2D(?texture2D(:texture2D(%texture2D([texture2D("},
    {"comma_with_and_without_blank", "mix(a,texture2D(s,uv), texture2D(s,uv))",
     k2D + "mix(a,texture2D(s,uv), repl_texture2D(s,uv))"},
    {"blanks_before_bracket_stay", "c =texture2D \n (s, uv);", k2D + "c =repl_texture2D \n (s, uv);"},
    {"bias", " texture2D(s,uv,1.0)", k2D + " repl_texture2D(s,uv,1.0)"},
    {"longer_words", " texture2DProj(s,p) mytexture2D(s,p) repl_texture2D(s,p)",
     " texture2DProj(s,p) mytexture2D(s,p) repl_texture2D(s,p)"},
    {"nested", " texture2D(s, texture2D(t,u).xy)", k2D + " repl_texture2D(s, repl_texture2D(t,u).xy)"},
    {"name_without_call", " texture2D ; texture2D", " texture2D ; texture2D"},
    {"at_the_start", "texture2D(s,uv)", "texture2D(s,uv)"},
    // texture2DLod
    {"lod_at_the_start_comes_second_once_a_line_is_added", "texture2DLod(s,uv,0.0)+texture2D(s,uv)",
     kLod + k2D + "repl_texture2DLod(s,uv,0.0)+repl_texture2D(s,uv)"},
    // textureCube
    {"cube_with_sampler", "uniform samplerCube env;\nvoid main() { c = textureCube(env, d); }",
     kCube + "uniform sampler2D env;\nvoid repl_main() { c = repl_textureCube(env, d); }" + kMain},
    {"cube_sampler_before_dot", " samplerCube.x (samplerCube  .y", " sampler2D.x (sampler2D  .y"},
    {"cube_sampler_without_blank", "f(samplerCube,int) g(samplerCube) ,samplerCube s",
     "f(samplerCube,int) g(samplerCube) ,samplerCube s"},
    {"all_at_once",
     "uniform samplerCube e;\nvoid main() {\n c = texture2D(s,u) + texture2DLod(s,u,0.0) + textureCube(e,d);\n}\n",
     kCube + kLod + k2D +
         "uniform sampler2D e;\nvoid repl_main() {\n c = repl_texture2D(s,u) + repl_texture2DLod(s,u,0.0) + "
         "repl_textureCube(e,d);\n}\n" +
         kMain},
    {"bytes_of_zero", "a\0 texture2D(s,u)\0"s, k2D + "a\0 repl_texture2D(s,u)\0"s},
    {"cube_lod_is_not_renamed_but_its_sampler_is", "uniform samplerCube e; c = textureCubeLod(e, d, 1.0);",
     "uniform sampler2D e; c = textureCubeLod(e, d, 1.0);"},
};

TEST(FragmentRewriting, GivesTheTextAndKeepsTheAuthorsLines) {
    for (const auto& [name, source, expected] : kCases) {
        const RewrittenFragment result = RewriteFragment(source);
        EXPECT_EQ(result.text, expected) << name;
        const auto linesOf = [](const std::string& text) {
            return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
        };
        EXPECT_EQ(linesOf(result.text), result.addedLines + linesOf(source) + (result.text.ends_with(kMain) ? 1 : 0))
            << name;
    }
}

}  // namespace
}  // namespace quillon
