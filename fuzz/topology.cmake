tw_add_fuzzer(fuzz_topology LIBS tw_displays)
