# Puts the page together out of its parts and writes it as a C++ source. Run as a script:
# cmake -DSOURCE=... -DOUTPUT=... -DSCRIPTS=a.js,b.js -P composePage.cmake
# SOURCE is the folder of the parts, SCRIPTS are the page's own scripts in their order.

set(vendor ${SOURCE}/vendor)

# Files from elsewhere must be the ones that were looked at.
file(STRINGS ${vendor}/SHA256SUMS sums)
foreach(line IN LISTS sums)
    string(REGEX MATCH "^([0-9a-f]+)  (.*)$" matched "${line}")
    file(SHA256 ${vendor}/${CMAKE_MATCH_2} found)
    if(NOT found STREQUAL CMAKE_MATCH_1)
        message(FATAL_ERROR "${vendor}/${CMAKE_MATCH_2} differs from its checksum in SHA256SUMS")
    endif()
endforeach()

# The base64 form of a SHA-256 given in hexadecimal digits: three bytes are four characters.
function(base64_of_hash hash result)
    set(alphabet ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/)
    set(padded "${hash}00")
    set(text "")
    foreach(at RANGE 0 60 6)
        string(SUBSTRING "${padded}" ${at} 6 digits)
        foreach(shift IN ITEMS 18 12 6 0)
            math(EXPR index "(0x${digits} >> ${shift}) & 63")
            string(SUBSTRING ${alphabet} ${index} 1 character)
            string(APPEND text ${character})
        endforeach()
    endforeach()
    string(SUBSTRING "${text}" 0 43 text)
    set(${result} "${text}=" PARENT_SCOPE)
endfunction()

file(READ ${vendor}/LICENSE licence)
file(READ ${vendor}/uPlot.iife.min.js chart_script)
file(READ ${vendor}/uPlot.min.css chart_style)
file(READ ${SOURCE}/page.css own_style)
file(READ ${SOURCE}/page.html page)
set(own_script "")
string(REPLACE "," ";" SCRIPTS "${SCRIPTS}")
foreach(name IN LISTS SCRIPTS)
    file(READ ${SOURCE}/js/${name} part)
    string(APPEND own_script "${part}")
endforeach()

# Comments and indentation stay here: every page would carry them.
string(REGEX REPLACE "\n *//[^\n]*" "" own_script "\n${own_script}")
string(REGEX REPLACE "\n */\\*\\*[^\n]*\\*/" "" own_script "${own_script}")
string(REGEX REPLACE "\n +" "\n" own_script "${own_script}")
string(REGEX REPLACE "\n\n+" "\n" own_script "${own_script}")
string(REGEX REPLACE "\n +" "\n" own_style "${own_style}")
string(REGEX REPLACE "\n\n+" "\n" own_style "${own_style}")

set(script "\n/* uPlot\n\n${licence}\n*/\n${chart_script}\n(() => {\n\"use strict\";\n${own_script}})();\n")
set(style "\n${chart_style}\n${own_style}")
foreach(part IN ITEMS script style)
    string(SHA256 hash "${${part}}")
    base64_of_hash(${hash} base64)
    string(REPLACE "@${part}_hash@" "${base64}" page "${page}")
    string(REPLACE "@${part}@" "${${part}}" page "${page}")
endforeach()

# A hexadecimal dump is the one way to a C++ array that minds neither quotes nor lengths.
file(WRITE ${OUTPUT}.html "${page}")
file(READ ${OUTPUT}.html bytes HEX)
string(REGEX REPLACE "(..)" "'\\\\x\\1'," bytes "${bytes}")
file(WRITE ${OUTPUT} "#include \"page/shell.h\"\n\nnamespace tool {\n\nnamespace {\n\n"
    "constexpr char bytes[] = { ${bytes} };\n\n} // namespace\n\n"
    "const std::string_view pageShell(bytes, sizeof bytes);\n\n} // namespace tool\n")
