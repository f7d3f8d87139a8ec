# SPDX-FileCopyrightText: 2026 Brenvale
# SPDX-License-Identifier: MIT

# These link the engine and nothing else, which proves that it needs Qt Core alone.
foreach(name tst_blockfiller tst_filecrusher_directory tst_filecrusher_everyfault
             tst_filecrusher_faults tst_filecrusher_file tst_filecrusher_hugefiles tst_filecrusher_links tst_filecrusher_names
             tst_filecrusher_neighbours tst_filecrusher_refused tst_filecrusher_stop
             tst_filecrusher_swapped tst_filecrusher_treefile tst_filecrusher_worker
             tst_filecrusher_workerstop tst_filecrusher_writeout tst_filecrusher_writes tst_medium
             tst_shredprogress)
  add_unit_test(${name} engine)
endforeach()

foreach(name tst_blockfiller tst_filecrusher_file tst_filecrusher_treefile tst_filecrusher_writes
             tst_medium)
  target_sources(${name} PRIVATE support/expectedbytes.cpp)
endforeach()

# File systems in images, and bytes that are recognised in them.
add_library(mediumsupport STATIC
  support/loopimage.cpp
  support/loopimage.h
  support/oldbytes.cpp
  support/oldbytes.h)
target_link_libraries(mediumsupport PUBLIC testsupport PRIVATE fileshredder_strictness)
target_link_libraries(tst_medium PRIVATE mediumsupport)

# The rules of the engine as a model, and random trees for both to work on.
add_library(modelsupport STATIC
  support/expectedbytes.cpp
  support/model/modeldisk.cpp
  support/model/modeldisk.h
  support/model/modelengine.cpp
  support/model/modelengine.h
  support/model/randomtree.cpp
  support/model/randomtree.h
  support/model/seeds.cpp
  support/model/seeds.h)
target_link_libraries(modelsupport PUBLIC testsupport PRIVATE fileshredder_strictness)

add_unit_test(tst_model_engine engine modelsupport)
target_sources(tst_model_engine PRIVATE support/briskthreads.cpp)
set_property(TEST tst_model_engine APPEND PROPERTY ENVIRONMENT "TMPDIR=/dev/shm")

foreach(name tst_instancelock tst_instancelock_places)
  add_unit_test(${name})
  target_sources(${name} PRIVATE
    support/instance.cpp ${PROJECT_SOURCE_DIR}/app/instancelock.cpp)
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR})
endforeach()

intercept(tst_filecrusher_faults fdopendir fstat openat readdir stat)
intercept(tst_filecrusher_hugefiles fwrite)
intercept(tst_filecrusher_writeout
  close fcntl fdatasync fstat fstatfs fsync openat sync sync_file_range syncfs unlinkat)
intercept(tst_filecrusher_writes fstat fwrite stat time unlinkat)
intercept(tst_instancelock fcntl)

watch_file_calls(tst_filecrusher_everyfault)
watch_file_calls(tst_filecrusher_swapped)

# Thousands of small trees are made and shredded: in memory, not on the disk.
set_property(TEST tst_filecrusher_everyfault tst_filecrusher_neighbours tst_filecrusher_swapped
  APPEND PROPERTY ENVIRONMENT "TMPDIR=/dev/shm")

# What scripts/medium runs: a table of what is left, by file system.
add_executable(mediumfacts support/mediumfacts.cpp)
target_link_libraries(mediumfacts PRIVATE fileshredder_strictness engine mediumsupport)
