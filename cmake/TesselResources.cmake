# Themes, translations and theme tables, put where the program looks for them, in the build tree and
# in an installation alike:
#   share/tessel/res/edje/*.edj, share/tessel/res/locale/*, share/tessel/shared/tables/*,
#   share/tessel/platform/*.edj

find_program(EDJE_CC edje_cc REQUIRED)
find_program(MSGFMT msgfmt REQUIRED)
find_program(RSVG_CONVERT rsvg-convert REQUIRED)

set(tessel_resource_files "")

# Artwork: SVG in the tree, PNG at three times its size in the theme, so that it stays crisp when a
# large screen scales it.
set(artwork_dir ${CMAKE_BINARY_DIR}/artwork)
file(MAKE_DIRECTORY ${artwork_dir})
file(GLOB artwork CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/edje/images/*.svg
     ${PROJECT_SOURCE_DIR}/platform/theme/images/*.svg)
set(artwork_files "")
foreach(svg ${artwork})
    get_filename_component(name ${svg} NAME_WE)
    add_custom_command(OUTPUT ${artwork_dir}/${name}.png
        COMMAND ${RSVG_CONVERT} --zoom 3 -o ${artwork_dir}/${name}.png ${svg}
        DEPENDS ${svg} VERBATIM)
    list(APPEND artwork_files ${artwork_dir}/${name}.png)
endforeach()

function(tessel_theme source target_dir)
    get_filename_component(name ${source} NAME_WE)
    get_filename_component(dir ${source} DIRECTORY)
    file(GLOB parts CONFIGURE_DEPENDS ${dir}/*.edc ${dir}/*/*.edc)
    set(out ${TESSEL_STAGE_DATADIR}/${target_dir}/${name}.edj)
    add_custom_command(OUTPUT ${out}
        COMMAND ${CMAKE_COMMAND} -E make_directory ${TESSEL_STAGE_DATADIR}/${target_dir}
        COMMAND ${CMAKE_COMMAND} -E env EINA_LOG_BACKTRACE=-1
                ${EDJE_CC} -id ${artwork_dir} -id ${dir} ${source} ${out}
        DEPENDS ${source} ${parts} ${artwork_files} VERBATIM)
    set(tessel_resource_files ${tessel_resource_files} ${out} PARENT_SCOPE)
    install(FILES ${out} DESTINATION ${TESSEL_INSTALL_DATADIR}/${target_dir})
endfunction()

tessel_theme(${PROJECT_SOURCE_DIR}/edje/tessel.edc res/edje)
tessel_theme(${PROJECT_SOURCE_DIR}/edje/app-assist-efl.edc res/edje)
tessel_theme(${PROJECT_SOURCE_DIR}/platform/theme/host-theme.edc platform)

file(GLOB catalogues CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/po/*.po)
foreach(po ${catalogues})
    get_filename_component(language ${po} NAME_WE)
    set(dir res/locale/${language}/LC_MESSAGES)
    set(out ${TESSEL_STAGE_DATADIR}/${dir}/tessel.mo)
    add_custom_command(OUTPUT ${out}
        COMMAND ${CMAKE_COMMAND} -E make_directory ${TESSEL_STAGE_DATADIR}/${dir}
        COMMAND ${MSGFMT} --check -o ${out} ${po}
        DEPENDS ${po} VERBATIM)
    list(APPEND tessel_resource_files ${out})
    install(FILES ${out} DESTINATION ${TESSEL_INSTALL_DATADIR}/${dir})
endforeach()

file(GLOB tables CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/res/tables/*.xml)
foreach(table ${tables})
    get_filename_component(name ${table} NAME)
    set(out ${TESSEL_STAGE_DATADIR}/shared/tables/${name})
    add_custom_command(OUTPUT ${out}
        COMMAND ${CMAKE_COMMAND} -E make_directory ${TESSEL_STAGE_DATADIR}/shared/tables
        COMMAND ${CMAKE_COMMAND} -E copy_if_different ${table} ${out}
        DEPENDS ${table} VERBATIM)
    list(APPEND tessel_resource_files ${out})
    install(FILES ${table} DESTINATION ${TESSEL_INSTALL_DATADIR}/shared/tables)
endforeach()

add_custom_target(resources ALL DEPENDS ${tessel_resource_files})
