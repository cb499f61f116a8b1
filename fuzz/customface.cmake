tw_add_fuzzer(fuzz_customface LIBS tw_faces)
