tw_add_fuzzer(fuzz_gridlayout LIBS tw_model)
