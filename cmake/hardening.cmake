# What a defect cannot be abused for: return addresses and the linker's tables stay as they are, no stack is
# executable, programs load anywhere. None of it costs measurable time.
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
add_compile_options(-fstack-protector-strong)
add_link_options(LINKER:-z,relro,-z,now,-z,noexecstack)

# Checked forms of the C library's functions, where the compiler optimises. The sanitizers watch the plain ones, and
# a level that the builder chose stays.
set(optimised $<CONFIG:Release,RelWithDebInfo,MinSizeRel>)
if(NOT sanitizers AND NOT CMAKE_CXX_FLAGS MATCHES "_FORTIFY_SOURCE")
    add_compile_options($<${optimised}:-U_FORTIFY_SOURCE> $<${optimised}:-D_FORTIFY_SOURCE=2>)
endif()
