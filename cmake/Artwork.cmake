# The plugin's artwork: which SVG becomes which resource, and the rules that pack it while building.
# Never keeps a packed file in the source tree.

# identity, bits per pixel, width x height, SVG file in src/resources/artwork
set(VELDRAN_ARTWORK
  "7202 24 512x512 vu-rectangular.svg"
  "7203 24 512x400 vu-rectangular-lit.svg"
  "7204  8 512x400 vu-rectangular-window.svg"
  "7205 24 576x576 vu-round.svg"
  "7206 24 576x576 vu-round-lit.svg"
  "7207 24 576x576 vu-round-window.svg"
  "7208  8 1774x267 countdown-large.svg"
  "7209  8 887x133 countdown-small.svg"
  "7210  8 526x526 radar-graticule.svg"
  "7211 24 545x545 tachometer-dial.svg"
  "7212  8 545x545 tachometer-mask.svg"
  "7213 24 558x761 stopwatch-dial.svg"
  "7214 24 558x761 stopwatch-mask.svg"
  "7215  8 762x762 data-pad-case.svg"
  "7216 24 760x760 data-pad-shadow.svg"
  "7217 24 5369x36 data-pad-glyphs.svg"
  "7218  8 762x762 data-pad-case-plain.svg"
  "7219 24 762x762 data-pad-shadow-plain.svg"
  "7220 24 768x768 altimeter-face.svg"
  "7221 24 768x768 altimeter-mask.svg"
  "7222 24 192x90 altimeter-editor.svg")

# Adds the rules that make the packed files in the current binary directory's artwork/ and an artwork.rc beside them, which
# names them without a path. Sets `files_variable` to the packed files and `rc_variable` to the resource script in the
# caller's scope. To be called in the directory of the target that compiles the script: it is compiled anew when a packed
# file changes. The resource compiler needs artwork/ among its include directories.
function(veldran_artwork files_variable rc_variable)
  set(directory ${CMAKE_CURRENT_BINARY_DIR}/artwork)
  file(MAKE_DIRECTORY ${directory})
  set(files "")
  set(script "")
  foreach(row IN LISTS VELDRAN_ARTWORK)
    separate_arguments(fields UNIX_COMMAND ${row})
    list(GET fields 0 identity)
    list(GET fields 1 bits)
    list(GET fields 2 size)
    list(GET fields 3 svg)
    set(source ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/../src/resources/artwork/${svg})
    set(packed ${directory}/${identity}.cpx)
    add_custom_command(OUTPUT ${packed}
      COMMAND artpack --bits ${bits} --size ${size} ${source} ${packed}
      DEPENDS artpack ${source}
      COMMENT "Packing ${svg}"
      VERBATIM)
    list(APPEND files ${packed})
    string(APPEND script "${identity} CPX \"${identity}.cpx\"\n")
  endforeach()

  set(rc ${directory}/artwork.rc)
  file(CONFIGURE OUTPUT ${rc} CONTENT "${script}" @ONLY)
  set_source_files_properties(${rc} PROPERTIES OBJECT_DEPENDS "${files}")
  set(${files_variable} ${files} PARENT_SCOPE)
  set(${rc_variable} ${rc} PARENT_SCOPE)
endfunction()
