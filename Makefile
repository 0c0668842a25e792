# Quick start: `make demo` and `make test`. Both install missing Debian packages first.
BUILD ?= build
ASAN_BUILD ?= build-asan
JOBS ?= $(shell nproc)
CMAKE_FLAGS ?=
# The project's own builds treat warnings as errors; a plain cmake build does not.
WERROR = -DCMAKE_COMPILE_WARNING_AS_ERROR=ON

.PHONY: deps configure build demo test sanitize-test coverage count release-check \
  octave-package package-check bench fuzz fuzz-build fuzz-merge format clean

deps:
	@sh scripts/install-deps.sh

configure: deps
	@cmake -S . -B $(BUILD) $(WERROR) $(CMAKE_FLAGS) >/dev/null

build: configure
	@cmake --build $(BUILD) -j $(JOBS)

demo: build
	@sh scripts/run-demo.sh $(BUILD)

test: build
	@cd $(BUILD) && ctest --output-on-failure -j $(JOBS)

# The whole suite again under ASan, UBSan and LeakSanitizer.
sanitize-test: deps
	@cmake -S . -B $(ASAN_BUILD) $(WERROR) -DNETCDFLIB_SANITIZE=ON -DCMAKE_BUILD_TYPE=Debug >/dev/null
	@cmake --build $(ASAN_BUILD) -j $(JOBS)
	@cd $(ASAN_BUILD) && ASAN_OPTIONS=detect_leaks=1:halt_on_error=1:abort_on_error=1 \
	  LSAN_OPTIONS=suppressions=$(CURDIR)/tests/lsan.supp \
	  UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1 ctest --output-on-failure -j $(JOBS)

# Line and function coverage of the product code (everything outside tests/, bench/ and
# examples/) by the whole suite, Octave bridge included, then the suite's size against it.
COV_BUILD ?= build-coverage
coverage: deps
	@cmake -S . -B $(COV_BUILD) -DNETCDFLIB_COVERAGE=ON -DCMAKE_BUILD_TYPE=Debug >/dev/null
	@cmake --build $(COV_BUILD) -j $(JOBS)
	@find $(COV_BUILD) -name '*.gcda' -delete
	@cd $(COV_BUILD) && ctest -j $(JOBS) >ctest.log; status=$$?; tail -n 3 ctest.log; exit $$status
	@gcovr --root . --object-directory $(COV_BUILD) --exclude '(.*/)?tests/' --exclude 'bench/' \
	  --exclude 'examples/' --exclude '$(COV_BUILD)/' --exclude '.*/FuzzedDataProvider.h' \
	  --exclude-throw-branches --gcov-ignore-parse-errors \
	  --txt $(COV_BUILD)/coverage.txt --print-summary | tail -n 3
	@/usr/bin/python3 scripts/count-lines.py

# The suite's size against the product code's, in code lines (see scripts/count-lines.py).
count:
	@/usr/bin/python3 scripts/count-lines.py

# What users get: a Release build with warnings as errors, installed into a temporary prefix
# and used from a C++ program outside the tree (find_package, pkg-config) and from Octave.
RELEASE_BUILD ?= build-release
release-check: deps
	@cmake -S . -B $(RELEASE_BUILD) -DCMAKE_BUILD_TYPE=Release $(WERROR) >/dev/null
	@cmake --build $(RELEASE_BUILD) -j $(JOBS)
	@sh tests/install/check-install.sh $(RELEASE_BUILD)

# netcdflib-<version>.tar.gz, a package for Octave's `pkg install`.
octave-package: deps
	@sh scripts/octave-package.sh .

# The package installed with `pkg install` into a temporary Octave prefix and used from a
# new octave-cli after `pkg load netcdflib`, then uninstalled.
package-check: deps
	@sh tests/install/check-octave-package.sh $$(sh scripts/octave-package.sh .)

# Benchmarks, not part of `make test`: every workload through netCDF-C, netcdflib from C++
# and from Octave, and python3-netcdf4, with a table of the figures (see README). Needs
# about 5 GiB free in $(BENCH_BUILD) for its files, removed at the end.
BENCH_BUILD ?= build-bench
BENCH_ARGS ?=
bench: deps
	@cmake -S . -B $(BENCH_BUILD) -DNETCDFLIB_BENCH=ON -DCMAKE_BUILD_TYPE=Release >/dev/null
	@cmake --build $(BENCH_BUILD) -j $(JOBS) --target ncbench_c qvbench netcdflib_octave ncdataset_decode ncdataset_header
	@/usr/bin/python3 bench/run.py --build $(BENCH_BUILD) $(BENCH_ARGS)

# Coverage-guided fuzzing of netcdflib (clang 14, libFuzzer, ASan, UBSan, LeakSanitizer):
# the committed corpus must reach every operation, then FUZZ_SECONDS of fuzzing from it.
# FUZZ_SEED and FUZZ_RUNS make a run nearly repeatable: the same seed and number of inputs
# from the same corpus give largely the same inputs (CI uses them; 0 and -1 mean random
# and unbounded).
# New inputs go to $(FUZZ_BUILD)/fuzz-corpus, findings to $(FUZZ_BUILD)/fuzz-artifacts.
FUZZ_BUILD ?= build-fuzz
FUZZ_SECONDS ?= 120
FUZZ_SEED ?= 0
FUZZ_RUNS ?= -1
FUZZ_ENV = ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 \
  LSAN_OPTIONS=suppressions=$(CURDIR)/tests/lsan.supp:print_suppressions=0 \
  UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1
fuzz-build: deps
	@cmake -S . -B $(FUZZ_BUILD) $(WERROR) -DCMAKE_C_COMPILER=clang-14 -DCMAKE_CXX_COMPILER=clang++-14 \
	  -DNETCDFLIB_FUZZ=ON -DNETCDFLIB_OCTAVE=OFF >/dev/null
	@cmake --build $(FUZZ_BUILD) -j $(JOBS) --target netcdflib_fuzzer
	@mkdir -p $(FUZZ_BUILD)/fuzz-corpus $(FUZZ_BUILD)/fuzz-artifacts

fuzz: fuzz-build
	@env $(FUZZ_ENV) NETCDFLIB_FUZZ_REQUIRE_HANDLERS=1 $(FUZZ_BUILD)/bin/netcdflib_fuzzer \
	  -runs=0 tests/fuzz/corpus 2>$(FUZZ_BUILD)/fuzz-seeds.log; \
	  status=$$?; grep -E '^(netcdflib_fuzzer:|SUMMARY)' $(FUZZ_BUILD)/fuzz-seeds.log; exit $$status
	@env $(FUZZ_ENV) $(FUZZ_BUILD)/bin/netcdflib_fuzzer -max_total_time=$(FUZZ_SECONDS) \
	  -seed=$(FUZZ_SEED) -runs=$(FUZZ_RUNS) \
	  -print_final_stats=1 -artifact_prefix=$(FUZZ_BUILD)/fuzz-artifacts/ \
	  $(FUZZ_BUILD)/fuzz-corpus tests/fuzz/corpus 2>$(FUZZ_BUILD)/fuzz.log; \
	  status=$$?; grep -E '^(netcdflib_fuzzer:|stat::|SUMMARY|==[0-9]+==ERROR)' $(FUZZ_BUILD)/fuzz.log; \
	  exit $$status

# Grows the committed corpus, e.g. for a new operation row: FUZZ_SECONDS of fuzzing from it,
# then a merge that adds only the inputs reaching code the corpus does not.
fuzz-merge: fuzz-build
	@env $(FUZZ_ENV) $(FUZZ_BUILD)/bin/netcdflib_fuzzer -max_total_time=$(FUZZ_SECONDS) \
	  -artifact_prefix=$(FUZZ_BUILD)/fuzz-artifacts/ $(FUZZ_BUILD)/fuzz-corpus tests/fuzz/corpus \
	  2>$(FUZZ_BUILD)/fuzz.log; status=$$?; grep -E '^(netcdflib_fuzzer:|SUMMARY)' $(FUZZ_BUILD)/fuzz.log; \
	  [ $$status -eq 0 ] || exit $$status
	@env $(FUZZ_ENV) $(FUZZ_BUILD)/bin/netcdflib_fuzzer -merge=1 tests/fuzz/corpus \
	  $(FUZZ_BUILD)/fuzz-corpus 2>$(FUZZ_BUILD)/fuzz-merge.log; \
	  status=$$?; grep -E '^(netcdflib_fuzzer:|MERGE-OUTER: [0-9]+ new files)' $(FUZZ_BUILD)/fuzz-merge.log; exit $$status

format:
	@find gateway convert ops host octave tests examples bench -name '*.[ch]pp' -o -name '*.cc' | xargs clang-format -i

clean:
	@rm -rf $(BUILD) $(ASAN_BUILD) $(RELEASE_BUILD) netcdflib-*.tar.gz
