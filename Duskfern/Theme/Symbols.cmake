# The program's pictures are the glyphs of Debian's package bootstrap-icons (MIT licence). They are read from the
# package at build time and tinted at run time, so that no art lies in this repository.
set(DUSKFERN_SYMBOLS_DIR "/usr/share/bootstrap-icons/svg" CACHE PATH
    "Directory that holds the SVG glyphs of the package bootstrap-icons")

# Each row: the name a screen asks for, the glyph that stands for it. A name that says "fill" gets a solid glyph, so
# that the pictures of one list weigh the same.
set(DUSKFERN_SYMBOLS
    # Screens of the sidebar.
    house.fill                     house-fill
    circle.grid.2x2.fill           grid-fill                  # The family has no grid of four solid discs.
    sparkles                       stars
    lock.shield.fill               shield-lock-fill

    # Kinds of files.
    play.rectangle.fill            play-btn-fill
    photo.fill                     image-fill
    doc.fill                       file-earmark-fill
    archivebox.fill                archive-fill
    square.stack.3d.up.fill        stack

    # Volumes and what fills them.
    internaldrive.fill             device-hdd-fill            # The bare disk: built in.
    externaldrive.fill             hdd-fill                   # A disk in its box: also a share or a second partition.
    music.note                     music-note-beamed          # A single note looks lost in a tile of this size.
    film.fill                      film                       # There is no filled film strip; the outline reads well.
    arrow.down.circle.fill         arrow-down-circle-fill
    square.grid.2x2.fill           grid-3x3-gap-fill          # As launchers show applications; grid-fill is the map.
    gearshape.2.fill               gear-fill

    # Space map.
    doc.on.doc.fill                stickies-fill              # The pair of files exists in outline only.
    arrow.up.right.circle.fill     arrow-up-right-circle-fill
    circle.grid.cross              ui-radios-grid             # Rings: the map before it has bubbles.
    folder                         folder
    magnifyingglass                search
    arrow.clockwise                arrow-clockwise

    # Junk.
    shippingbox.fill               box-seam-fill
    doc.text.fill                  file-earmark-text-fill
    clock.fill                     clock-fill
    puzzlepiece.extension.fill     puzzle-fill
    trash.fill                     trash-fill
    checkmark.shield.fill          shield-fill-check
    checkmark.square.fill          check-square-fill
    square                         square                     # Same outer edge as check-square-fill: nothing jumps.

    # Folder browser.
    chevron.left                   chevron-left
    arrow.up                       arrow-up
    arrow.up.right                 arrow-up-right             # A link: leads elsewhere.
    folder.fill                    folder-fill
    menubar.dock.rectangle         window-desktop

    # Dialogs and controls.
    exclamationmark.triangle.fill  exclamation-triangle-fill
    xmark.circle.fill              x-circle-fill
)

# Puts every symbol of the table into the resources of `target` as :/symbols/<name>.svg. Stops the configuration when
# the installed package lacks a glyph, because the picture would otherwise be missing only once a screen shows it.
function(duskfern_symbol_resources target)
    set(names ${DUSKFERN_SYMBOLS})
    set(missing "")
    set(copies "")
    while(names)
        list(POP_FRONT names symbol glyph)
        set(source "${DUSKFERN_SYMBOLS_DIR}/${glyph}.svg")
        if(NOT EXISTS "${source}")
            list(APPEND missing "${glyph}.svg (for ${symbol})")
            continue()
        endif()
        # A resource alias belongs to a file, and two symbols may share a glyph: each gets a copy of its own.
        set(copy "${CMAKE_CURRENT_BINARY_DIR}/symbols/${symbol}.svg")
        configure_file("${source}" "${copy}" COPYONLY)
        set_source_files_properties("${copy}" PROPERTIES QT_RESOURCE_ALIAS "${symbol}.svg")
        list(APPEND copies "${copy}")
    endwhile()
    if(missing)
        list(JOIN missing "\n  " missing)
        message(FATAL_ERROR
            "Glyphs are missing in ${DUSKFERN_SYMBOLS_DIR}:\n  ${missing}\n"
            "They come with the package bootstrap-icons (apt-get install bootstrap-icons); "
            "set DUSKFERN_SYMBOLS_DIR if they lie elsewhere.")
    endif()
    qt_add_resources(${target} duskfern_symbols PREFIX "/symbols" FILES ${copies})
endfunction()
