# Run by CPack on the installed files before it packs them: Debian wants the man page and the changelog compressed,
# without a time in them.
set(share ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr/share)
file(INSTALL ${CPACK_VARNOTH_CHANGELOG} DESTINATION ${share}/doc/varnoth
  PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
execute_process(COMMAND gzip -9n ${share}/man/man1/varnoth.1 ${share}/doc/varnoth/changelog COMMAND_ERROR_IS_FATAL ANY)
