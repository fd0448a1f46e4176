# Run by CPack over the folder that becomes the package: adds copyright and changelog, and compresses what Debian wants
# compressed.
set(root ${CPACK_TEMPORARY_DIRECTORY})
set(source ${CMAKE_CURRENT_LIST_DIR}/..)
set(documents ${root}/usr/share/doc/daybrix)

file(READ ${source}/LICENSE licence)
string(REGEX MATCH "Copyright \\(c\\) ([^\n]+)\n\n(.*)\n$" matched "${licence}")
set(holder ${CMAKE_MATCH_1})
string(REPLACE "\n\n" "\n.\n" terms "${CMAKE_MATCH_2}")
string(REPLACE "\n" "\n " terms "${terms}")
file(WRITE ${documents}/copyright
"Format: https://www.debian.org/doc/packaging-manuals/copyright-format/1.0/
Upstream-Name: Daybrix

Files: *
Copyright: ${holder}
License: Expat
 ${terms}
")

# Every heading with a version is an entry, every item below it a change.
file(STRINGS ${source}/CHANGELOG.md lines)
set(changelog "")
set(trailer "")
foreach(line IN LISTS lines)
  if(line MATCHES "^## ([0-9.]+), ([0-9-]+)$")
    set(version ${CMAKE_MATCH_1})
    execute_process(COMMAND date -u -R -d ${CMAKE_MATCH_2} OUTPUT_VARIABLE date OUTPUT_STRIP_TRAILING_WHITESPACE
      COMMAND_ERROR_IS_FATAL ANY)
    string(APPEND changelog "${trailer}daybrix (${version}) unstable; urgency=medium\n\n")
    set(trailer "\n -- ${CPACK_DEBIAN_PACKAGE_MAINTAINER}  ${date}\n\n")
  elseif(NOT trailer STREQUAL "" AND line MATCHES "^- (.*)$")
    string(APPEND changelog "  * ${CMAKE_MATCH_1}\n")
  elseif(NOT trailer STREQUAL "" AND line MATCHES "^  (.*)$")
    string(APPEND changelog "    ${CMAKE_MATCH_1}\n")
  endif()
endforeach()
file(WRITE ${documents}/changelog "${changelog}${trailer}")

file(GLOB manuals ${root}/usr/share/man/*/*.[1-9])
execute_process(COMMAND gzip -9nf ${documents}/changelog ${manuals} COMMAND_ERROR_IS_FATAL ANY)
