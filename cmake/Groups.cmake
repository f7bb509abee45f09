option(KV_GROUPS "Compile several files of a folder together" ON)

# kv_compile_in_groups(TARGET MOST): compiles up to about MOST files of a target together, because the headers of the
# system and of the standard library, and the templates that all files use, take most of the time. The group of a file
# follows from its name, so a new file seldom changes another group, and names usually clash with those of the new file
# only. Files that define the identifiers that others declare are compiled alone: main.cpp, Guids.cpp and ProbeGuids.cpp.
function(kv_compile_in_groups target most)
  if(NOT KV_GROUPS)
    return()
  endif()
  get_target_property(sources ${target} SOURCES)
  list(FILTER sources INCLUDE REGEX "\\.cpp$")
  list(FILTER sources EXCLUDE REGEX "(/main|Guids)\\.cpp$")
  # A power of two, so that the number of groups seldom changes.
  list(LENGTH sources count)
  set(groups 1)
  while(count GREATER most)
    math(EXPR groups "${groups} * 2")
    math(EXPR count "(${count} + 1) / 2")
  endwhile()
  foreach(source ${sources})
    get_filename_component(file ${source} NAME_WE)
    string(MD5 hash ${file})
    string(SUBSTRING ${hash} 0 6 hash)
    math(EXPR group "0x${hash} % ${groups}")
    set_source_files_properties(${source} PROPERTIES UNITY_GROUP group${group})
  endforeach()
  set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
endfunction()
