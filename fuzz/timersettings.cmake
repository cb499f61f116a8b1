tw_add_fuzzer(fuzz_timersettings LIBS tw_faces)
