# Installs BUILD into the emptied folder STAGE, by DESTDIR and to another prefix than the one it was built for.
file(REMOVE_RECURSE "${STAGE}")
set(ENV{DESTDIR} "${STAGE}")
execute_process(COMMAND ${CMAKE_COMMAND} --install "${BUILD}" --prefix /moved RESULT_VARIABLE failed)
if(failed)
    message(FATAL_ERROR "not installed: ${failed}")
endif()
