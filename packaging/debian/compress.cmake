# Run by CPack on the installed files before it packs them: Debian wants the man page and the changelog compressed,
# without a time in them.
set(share ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr/share)
configure_file(${CPACK_VARNOTH_CHANGELOG} ${share}/doc/varnoth/changelog COPYONLY)
execute_process(COMMAND gzip -9n ${share}/man/man1/varnoth.1 ${share}/doc/varnoth/changelog COMMAND_ERROR_IS_FATAL ANY)
