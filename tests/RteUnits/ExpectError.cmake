# Runs ${RTE} units ${ARGS}; passes when it exits non-zero and stderr matches ${EXPECTED}.
execute_process(COMMAND "${RTE}" units ${ARGS} RESULT_VARIABLE code OUTPUT_VARIABLE out ERROR_VARIABLE err)
if(code EQUAL 0)
  message(FATAL_ERROR "exit code 0; stdout: ${out}")
endif()
if(NOT err MATCHES "${EXPECTED}")
  message(FATAL_ERROR "stderr does not match '${EXPECTED}': ${err}")
endif()
