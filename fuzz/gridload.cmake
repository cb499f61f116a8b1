tw_add_fuzzer(fuzz_gridload LIBS tw_grid)
