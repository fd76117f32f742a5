# A folder for the browser: three pictures, a broken file and an empty folder. PICTURES is the folder, STOCK a picture.
file(REMOVE_RECURSE ${PICTURES})
file(MAKE_DIRECTORY ${PICTURES}/Empty)
foreach(name IN ITEMS "img 2.png" "img 10.png" "lake.png")
  configure_file(${STOCK} "${PICTURES}/${name}" COPYONLY)
endforeach()
file(WRITE ${PICTURES}/broken.png "This is no picture.")
