# Quick start: `make demo` and `make test`. Both install missing Debian packages first.
BUILD ?= build
ASAN_BUILD ?= build-asan
JOBS ?= $(shell nproc)
CMAKE_FLAGS ?=

.PHONY: deps configure build demo test sanitize-test format clean

deps:
	@sh scripts/install-deps.sh

configure: deps
	@cmake -S . -B $(BUILD) $(CMAKE_FLAGS) >/dev/null

build: configure
	@cmake --build $(BUILD) -j $(JOBS)

demo: build
	@sh scripts/run-demo.sh $(BUILD)

test: build
	@cd $(BUILD) && ctest --output-on-failure -j $(JOBS)

# The whole suite again under ASan, UBSan and LeakSanitizer.
sanitize-test: deps
	@cmake -S . -B $(ASAN_BUILD) -DNETCDFLIB_SANITIZE=ON -DCMAKE_BUILD_TYPE=Debug >/dev/null
	@cmake --build $(ASAN_BUILD) -j $(JOBS)
	@cd $(ASAN_BUILD) && ASAN_OPTIONS=detect_leaks=1:halt_on_error=1:abort_on_error=1 \
	  LSAN_OPTIONS=suppressions=$(CURDIR)/tests/lsan.supp \
	  UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1 ctest --output-on-failure -j $(JOBS)

format:
	@find gateway convert ops host octave tests examples bench -name '*.[ch]pp' -o -name '*.cc' | xargs clang-format -i

clean:
	@rm -rf $(BUILD) $(ASAN_BUILD)
