# jostle_patched_box2d(<sources> <target>): a copy of the sources in the target folder with patches/*.patch applied, in
# order of their names. The files that they change must be the ones they were made for, by patches/SHA256SUMS. The copy
# is made again only when a patch has changed, so that configuring again compiles nothing.
function(jostle_patched_box2d source target)
    set(folder "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/patches")
    file(GLOB patches CONFIGURE_DEPENDS "${folder}/*.patch")
    list(SORT patches)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${patches} "${folder}/SHA256SUMS")

    file(STRINGS "${folder}/SHA256SUMS" sums)
    foreach(line IN LISTS sums)
        string(SUBSTRING "${line}" 0 64 wanted)
        string(SUBSTRING "${line}" 66 -1 name)
        file(SHA256 "${source}/${name}" sum)
        if(NOT sum STREQUAL wanted)
            message(FATAL_ERROR "${source}/${name} is not the file of Box2D 2.4.1 that our patches are for "
                "(SHA-256 ${sum}, expected ${wanted}). Run scripts/setup.sh, or configure with -DJOSTLE_PLAIN_ENGINE=ON")
        endif()
    endforeach()

    set(state "${source}")
    foreach(patch IN LISTS patches)
        file(SHA256 "${patch}" sum)
        string(APPEND state "\n${sum}")
    endforeach()
    set(done "")
    if(EXISTS "${target}/.state")
        file(READ "${target}/.state" done)
    endif()
    if(done STREQUAL state)
        return()
    endif()

    find_program(JOSTLE_PATCH patch)
    if(NOT JOSTLE_PATCH)
        message(FATAL_ERROR "The program patch was not found: run scripts/setup.sh (Debian: patch), "
            "or configure with -DJOSTLE_PLAIN_ENGINE=ON")
    endif()
    file(REMOVE_RECURSE "${target}")
    file(COPY "${source}/include" "${source}/src" DESTINATION "${target}")
    foreach(patch IN LISTS patches)
        execute_process(COMMAND "${JOSTLE_PATCH}" -p1 --batch --forward --fuzz=0 --no-backup-if-mismatch -i "${patch}"
            WORKING_DIRECTORY "${target}" OUTPUT_VARIABLE output ERROR_VARIABLE output RESULT_VARIABLE result)
        if(NOT result EQUAL 0)
            message(FATAL_ERROR "${patch} could not be applied:\n${output}")
        endif()
    endforeach()
    file(WRITE "${target}/.state" "${state}")
endfunction()
