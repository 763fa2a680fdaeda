# The packages that the programs need, from the libraries that they load. Evolution's are left out: only the module that
# is loaded where its server runs needs them.
file(GLOB programs ${CPACK_TEMPORARY_DIRECTORY}/usr/bin/* ${CPACK_TEMPORARY_DIRECTORY}/usr/lib/quillary/*)
list(FILTER programs EXCLUDE REGEX quillary-evolution)
set(work ${CPACK_TOPLEVEL_DIRECTORY}/depends)
file(WRITE ${work}/debian/control "")
execute_process(COMMAND dpkg-shlibdeps -O ${programs} WORKING_DIRECTORY ${work}
  OUTPUT_VARIABLE CPACK_DEBIAN_PACKAGE_DEPENDS OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
string(REPLACE "shlibs:Depends=" "" CPACK_DEBIAN_PACKAGE_DEPENDS "${CPACK_DEBIAN_PACKAGE_DEPENDS}")
