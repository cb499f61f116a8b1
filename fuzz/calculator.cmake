tw_add_fuzzer(fuzz_calculator LIBS tw_tools)
