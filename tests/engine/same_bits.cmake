# Runs scene_hashes of both engines and fails unless they print the same.
# cmake -DOURS=... -DPLAIN=... "-DARGUMENTS=SCENE;SIZE;FRAME..." -P same_bits.cmake
foreach(engine IN ITEMS OURS PLAIN)
    execute_process(COMMAND "${${engine}}" ${ARGUMENTS} OUTPUT_VARIABLE ${engine}_hashes RESULT_VARIABLE result)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "${${engine}} failed: ${result}")
    endif()
endforeach()
if(OURS_hashes STREQUAL "" OR NOT OURS_hashes STREQUAL PLAIN_hashes)
    message(FATAL_ERROR "The engines differ. Ours:\n${OURS_hashes}Plain:\n${PLAIN_hashes}")
endif()
message("${OURS_hashes}")
