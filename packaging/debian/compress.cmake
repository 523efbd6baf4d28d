# CPack runs this on the installed files before packing them: Debian requires the man pages and the changelog to be
# compressed, without a timestamp.
set(share ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr/share)
configure_file(${CPACK_VARNOTH_CHANGELOG} ${share}/doc/varnoth/changelog COPYONLY)
execute_process(
  COMMAND gzip -9n ${share}/man/man1/varnoth.1 ${share}/man/man1/varnoth-cli.1 ${share}/doc/varnoth/changelog
  COMMAND_ERROR_IS_FATAL ANY)
