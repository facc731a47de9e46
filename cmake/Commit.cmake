# cmake -D SOURCE=... -D OUTPUT=... -P Commit.cmake: writes which commit is built, when that has changed. Empty without
# git or outside of a repository.
cmake_minimum_required(VERSION 3.23)
execute_process(COMMAND git -C ${SOURCE} describe --always --dirty --abbrev=12 --exclude *
                OUTPUT_VARIABLE commit OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET RESULT_VARIABLE status)
if(NOT status EQUAL 0)
    set(commit "")
endif()
file(CONFIGURE OUTPUT ${OUTPUT} @ONLY CONTENT "namespace quillon::cli {

extern const char* const kCommit = \"@commit@\";

}  // namespace quillon::cli
")
