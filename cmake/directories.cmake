# Where files are installed to: relative to the prefix wherever they lie in it, so that what is installed may be
# moved; absolute elsewhere.
include(GNUInstallDirs)
foreach(kind IN ITEMS BIN LIB INCLUDE)
    set(QMDB_${kind}DIR ${CMAKE_INSTALL_${kind}DIR})
    cmake_path(IS_PREFIX CMAKE_INSTALL_PREFIX "${QMDB_${kind}DIR}" NORMALIZE lies_in_prefix)
    if(lies_in_prefix)
        cmake_path(RELATIVE_PATH QMDB_${kind}DIR BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX})
    endif()
    if(IS_ABSOLUTE "${QMDB_${kind}DIR}")
        set(QMDB_FIXED_PREFIX ${CMAKE_INSTALL_PREFIX})
    endif()
endforeach()

# How a directory is found by a file installed in another: from the file's own place, which "origin" stands for, when
# both lie in the prefix.
function(qmdb_path_to directory from origin result)
    if(IS_ABSOLUTE "${directory}" OR IS_ABSOLUTE "${from}")
        cmake_path(ABSOLUTE_PATH directory BASE_DIRECTORY "${CMAKE_INSTALL_PREFIX}" NORMALIZE)
        set(${result} "${directory}" PARENT_SCOPE)
    else()
        file(RELATIVE_PATH path "/${from}" "/${directory}")
        string(REGEX REPLACE "/$" "" path "${origin}/${path}")
        set(${result} "${path}" PARENT_SCOPE)
    endif()
endfunction()
