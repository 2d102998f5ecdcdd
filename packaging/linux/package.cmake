# The Debian package. The program keeps its data beside its executable, so every user starts a copy of his own
# (marlevo.sh); the package itself only holds what is the same for all.
include(GNUInstallDirs)
install(TARGETS marlevo make_database RUNTIME DESTINATION lib/marlevo)
install(FILES ${CMAKE_BINARY_DIR}/bin/4star.mdb DESTINATION ${CMAKE_INSTALL_DATADIR}/marlevo)
install(PROGRAMS packaging/linux/marlevo.sh DESTINATION ${CMAKE_INSTALL_BINDIR} RENAME marlevo)
install(FILES packaging/linux/org.marlevo.Marlevo.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${CMAKE_BINARY_DIR}/package/org.marlevo.Marlevo.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES packaging/icon/marlevo.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
install(FILES packaging/icon/marlevo.png DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/256x256/apps)
install(FILES packaging/linux/copyright DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY ${CMAKE_BINARY_DIR}/package/manual/ DESTINATION ${CMAKE_INSTALL_DATADIR}/marlevo)
install(FILES ${CMAKE_BINARY_DIR}/package/changelog.gz ${CMAKE_BINARY_DIR}/package/NEWS.gz
        DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(FILES ${CMAKE_BINARY_DIR}/package/marlevo.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME marlevo)
set(CPACK_PACKAGE_CONTACT "Marlevo maintainers <maintainers@marlevo.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Tickets, bet slips and customers of a lottery betting agent")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "The agent ticks bet kinds and digits; the program expands them into tickets,
prints them as marks onto the official slips, keeps customers and their
purchases, and checks them against a drawn number. Traditional Chinese.")
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION misc)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS fonts-noto-cjk)
# Qt brings its own part of ibus. Who has neither gets fcitx5, with Zhuyin.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS
    "cups, fcitx5 | ibus, fcitx5-frontend-qt6 | ibus, fcitx5-chewing | ibus-chewing")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
include(CPack)
