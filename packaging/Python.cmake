# The Python package. Nothing of it is compiled; the types for checkers and editors are written by the build.
set(place lib/python3/site-packages)
if(EXISTS /etc/debian_version)
  set(place lib/python3/dist-packages)
endif()
set(KESTREL_PYTHON_FOLDER ${place} CACHE PATH "Where the Python package is installed")
install(DIRECTORY ${PROJECT_SOURCE_DIR}/bindings/python/kestrel DESTINATION ${KESTREL_PYTHON_FOLDER} COMPONENT python
  PATTERN __pycache__ EXCLUDE)
install(FILES ${PROJECT_BINARY_DIR}/generated/interface/__init__.pyi
  DESTINATION ${KESTREL_PYTHON_FOLDER}/kestrel COMPONENT python)
