if(NOT EXISTS "${FILE}")
  execute_process(COMMAND "${TOOL}" "${FILE}" COMMAND_ERROR_IS_FATAL ANY)
endif()
