#Fails when OBJECT runs code at start or at exit.
execute_process(COMMAND ${OBJDUMP} - h ${OBJECT} OUTPUT_VARIABLE sections COMMAND_ERROR_IS_FATAL ANY) execute_process(
    COMMAND ${NM} ${OBJECT} OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY) if (NOT symbols MATCHES "modelObjects")
    message(FATAL_ERROR "${OBJECT} does not hold the objects that were to be checked.") endif()
        foreach (found
                 "init_array"
                 "fini_array"
                 "\\.ctors") if (sections MATCHES "${found}")
            message(FATAL_ERROR "${OBJECT} has a section ${found}: an object is not constant-initialised.") endif()
                endforeach() foreach (found
                                      "__cxa_atexit"
                                      "_GLOBAL__sub_I"
                                      "__cxa_guard_acquire") if (symbols MATCHES "${found}")
                    message(FATAL_ERROR
                            "${OBJECT} refers to ${found}: an object is not constant-initialised or has a destructor.")
                        endif() endforeach()
