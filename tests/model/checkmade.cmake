# Every source and header that the compiler of the model has written is known to the build: what includes one that is not
# would be compiled a run too late.
file(GLOB there ${FOLDER}/*.cpp ${FOLDER}/*.h)
list(REMOVE_ITEM there ${MADE})
if(there)
  message(FATAL_ERROR "not told to the build, see tern_model: ${there}")
endif()
