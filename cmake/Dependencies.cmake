# The libraries that the system uses. `./dev setup` installs the packages; what the distribution carries as
# source only is fetched by fetch-sources.sh into a cache outside the build folder.
#
# Targets: duktape, miniz, httplib, glew_static, window_system, lodepng, libdeflate, md4c, fmt::fmt, nlohmann_json::nlohmann_json,
# OpenEXR::OpenEXR, GTest::*; folders of headers: RAPIDXML_INCLUDE, STB_INCLUDE, CLI11_INCLUDE.

find_package(Threads REQUIRED)

if(WIN32)
    set(wanted_sources windows)
endif()
execute_process(COMMAND ${PROJECT_SOURCE_DIR}/cmake/fetch-sources.sh ${wanted_sources}
                OUTPUT_VARIABLE QUILLON_SOURCES OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)

# Duktape, with a check of the native stack that the distribution's build lacks: without it two small scripts kill a
# process on a thread with a small stack. The check itself is quillon_refuses_call of src/platform. The compiler
# of scripts is the one recursion that does not ask for it by itself.
set(duktape_dir ${PROJECT_BINARY_DIR}/duktape)
file(READ ${QUILLON_SOURCES}/duktape/duk_config.h duk_config)
string(APPEND duk_config "\n#undef DUK_USE_NATIVE_STACK_CHECK\n#ifdef __cplusplus\nextern \"C\"\n#endif\n"
       "int quillon_refuses_call(void);\n#define DUK_USE_NATIVE_STACK_CHECK() quillon_refuses_call()\n")
# Windows unwinds frame by frame on the way back to a setjmp that names its own frame, and ends the process where it
# does not find that: an error inside the handler of an error does it. Without a frame it sets the registers, as
# everywhere else.
if(WIN32)
    string(APPEND duk_config "#undef DUK_SETJMP\n#define DUK_SETJMP(jb) _setjmp((jb), NULL)\n")
endif()
# In the copy that ends scripts the heap's user data, if there is any, points at the function to ask, see
# src/script/TimeLimit.h. Duktape asks
# before it runs an instruction, and its lines are those of the instruction before: while it asks, it is one further.
string(APPEND duk_config "#ifdef QUILLON_ENDS_SCRIPTS\n#define DUK_USE_INTERRUPT_COUNTER\n"
       "#define DUK_USE_EXEC_TIMEOUT_CHECK(udata) \\\n"
       "    ((udata) != NULL && ((++*thr->ptr_curr_pc, (*(int (**)(void)) (udata))()) \\\n"
       "     ? (--*thr->ptr_curr_pc, 1) : (--*thr->ptr_curr_pc, 0)))\n"
       "#endif\n")
file(CONFIGURE OUTPUT ${duktape_dir}/duk_config.h CONTENT "${duk_config}" @ONLY)
configure_file(${QUILLON_SOURCES}/duktape/duktape.h ${duktape_dir}/duktape.h COPYONLY)
file(READ ${QUILLON_SOURCES}/duktape/duktape.c duktape_source)
# Its compiler recurses without a look at the native stack. And the error of a call of what is no function is made with
# the line of the last call before it.
foreach(change "comp_ctx->recursion_depth++~duk_native_stack_check(comp_ctx->thr)"
               "str_targ = duk_push_string_readable(thr, -4)~duk_hthread_sync_currpc(thr)")
    string(REGEX MATCH "^(.*)~(.*)$" change "${change}")
    string(FIND "${duktape_source}" "${CMAKE_MATCH_1};" found)
    if(found EQUAL -1)
        message(FATAL_ERROR "duktape.c has changed: there is no ${CMAKE_MATCH_1}")
    endif()
    string(REPLACE "${CMAKE_MATCH_1};" "${CMAKE_MATCH_2};\n\t${CMAKE_MATCH_1};" duktape_source "${duktape_source}")
endforeach()
file(CONFIGURE OUTPUT ${duktape_dir}/duktape.c CONTENT "${duktape_source}" @ONLY)
# Two copies of it. The tool's can end a script that never returns; a module has the plain one, where such a script blocks
# its host. A program chooses by its property ENDS_SCRIPTS, and links `duktape` like everyone.
foreach(copy duktape_plain duktape_ending)
    add_library(${copy} STATIC ${duktape_dir}/duktape.c)
    target_link_libraries(${copy} INTERFACE $<LINK_ONLY:quillon_platform>)
    target_include_directories(${copy} SYSTEM PUBLIC ${duktape_dir})
    target_compile_options(${copy} PRIVATE -w)
    if(QUILLON_SANITIZE)
        target_compile_options(${copy} PRIVATE -fno-sanitize=pointer-overflow)
    endif()
endforeach()
target_compile_definitions(duktape_ending PRIVATE QUILLON_ENDS_SCRIPTS)
add_library(duktape INTERFACE)
target_link_libraries(duktape INTERFACE
    $<IF:$<BOOL:$<TARGET_PROPERTY:ENDS_SCRIPTS>>,duktape_ending,duktape_plain>)

# miniz, for reading archives from memory and for writing them.
add_library(miniz STATIC ${QUILLON_SOURCES}/miniz/miniz.c)
target_include_directories(miniz SYSTEM PUBLIC ${QUILLON_SOURCES}/miniz)
target_compile_options(miniz PRIVATE -w)

# The preview's server. The distribution's own build pulls libraries in that a server on one machine has no use for.
add_library(httplib INTERFACE)
target_include_directories(httplib SYSTEM INTERFACE ${QUILLON_SOURCES}/cpp-httplib)
target_compile_definitions(httplib INTERFACE CPPHTTPLIB_LISTEN_BACKLOG=128 CPPHTTPLIB_USE_POLL)
target_link_libraries(httplib INTERFACE Threads::Threads)
if(WIN32)
    target_compile_definitions(httplib INTERFACE _WIN32_WINNT=0x0A00)
    target_link_libraries(httplib INTERFACE ws2_32 crypt32)
endif()

if(WIN32)
    include(${CMAKE_CURRENT_LIST_DIR}/WindowsLibraries.cmake)
else()
    include(${CMAKE_CURRENT_LIST_DIR}/LinuxLibraries.cmake)
endif()
