# tern_model(NAME FOLDER)
# The model sources below FOLDER as a library NAME of constant C++ data, one file a source, whatever stands in it. A program
# links one model only.
function(tern_model name folder)
  set(out ${TERN_GENERATED_DIR}/model/${name})
  set(model ${PROJECT_SOURCE_DIR}/model)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${folder}/*.tern)
  file(GLOB_RECURSE names CONFIGURE_DEPENDS ${model}/*.tsv ${model}/catalogue/*.txt)
  # Places in the sources are told from the root of the repository, wherever that lies.
  file(RELATIVE_PATH named ${PROJECT_SOURCE_DIR} ${folder})
  set(made rules observers model)
  foreach(source ${sources})
    file(RELATIVE_PATH stem ${folder} ${source})
    string(REGEX REPLACE "\\.tern$" "" stem ${stem})
    string(REGEX REPLACE "[^A-Za-z0-9]" "_" stem ${stem})
    list(APPEND made ${stem})
  endforeach()
  # The headers too: what includes one that changes is compiled in the same run.
  list(TRANSFORM made REPLACE "(.+)" "${out}/\\1.cpp;${out}/\\1.h")
  # The stamp goes with the run; the files keep their times when nothing in them changes.
  add_custom_command(OUTPUT ${out}/compiled.stamp BYPRODUCTS ${made}
    COMMAND modelc --model ${model} --out ${out} ${named}
    COMMAND ${CMAKE_COMMAND} -E touch ${out}/compiled.stamp
    DEPENDS modelc ${sources} ${names}
    WORKING_DIRECTORY ${PROJECT_SOURCE_DIR}
    COMMENT "Compiling ${name}" VERBATIM)
  add_custom_target(${name}-compiled DEPENDS ${out}/compiled.stamp)
  add_library(${name} STATIC ${made} ${model}/runtime/modellink.cpp)
  set_target_properties(${name} PROPERTIES TERN_MADE_IN ${out} TERN_MADE "${made}")
  target_include_directories(${name} PUBLIC ${out})
  target_link_libraries(${name} PUBLIC model-variables model-assets)
  add_dependencies(${name} ${name}-compiled catalogue-made)
endfunction()
