# One-command set-up: `make run` and `make test` each install what is missing, build and go.
BUILD_DIR ?= build
JOBS ?= $(shell nproc 2>/dev/null || echo 2)

# Debian packages the build, the tests and the benchmarks need.
DEB_PACKAGES := cmake make g++ gcc binutils libgtest-dev libgmock-dev libbenchmark-dev \
                libcli11-dev libboost-math-dev libcairo2-dev libhts-dev pkg-config locales poppler-utils

# And those of the R package (`make rpackage`); its tests run in `make test` when R has them.
R_DEB_PACKAGES := r-base-dev r-cran-qtl r-cran-testthat

SUDO := $(shell [ "$$(id -u)" = 0 ] || echo sudo)

.PHONY: deps deps-r install-debs build run test test-sanitize bench clean examples rpackage

deps:
	@$(MAKE) --no-print-directory install-debs PACKAGES="$(DEB_PACKAGES)"

deps-r:
	@$(MAKE) --no-print-directory install-debs PACKAGES="$(R_DEB_PACKAGES)"

install-debs:
	@missing=""; \
	for p in $(PACKAGES); do \
	  dpkg-query -W -f='$${Status}' $$p 2>/dev/null | grep -q 'install ok installed' || missing="$$missing $$p"; \
	done; \
	if [ -n "$$missing" ]; then \
	  echo "Installing Debian packages:$$missing"; \
	  $(SUDO) env DEBIAN_FRONTEND=noninteractive apt-get update -q && \
	  $(SUDO) env DEBIAN_FRONTEND=noninteractive apt-get install -y -q --no-install-recommends $$missing; \
	fi
	@# A decimal-comma locale, for the test that a host's locale changes no number read or written.
	@locale -a 2>/dev/null | grep -qix 'de_DE.utf8' || $(SUDO) localedef -i de_DE -f UTF-8 de_DE.UTF-8

build:
	cmake -S . -B $(BUILD_DIR) -DCMAKE_BUILD_TYPE=Release
	cmake --build $(BUILD_DIR) -j $(JOBS)

# The main job: a whole linkage map of the bundled F2 example, with its summary. Only the library
# and the command are built (the tests and benchmarks wait for `make test` and `make bench`). The
# logs and result files land beside the example.
run: deps
	cmake -S . -B $(BUILD_DIR) -DCMAKE_BUILD_TYPE=Release
	cmake --build $(BUILD_DIR) -j $(JOBS) --target gaengine gaengine_cli
	cd examples && ../$(BUILD_DIR)/gaengine map f2_five_chromosomes.map

test: deps deps-r build
	cd $(BUILD_DIR) && ctest --output-on-failure -j $(JOBS)

# The suite under AddressSanitizer and UndefinedBehaviorSanitizer, in a build folder of its own
# (not part of `make test`). Leaks count as failures.
SANITIZE_DIR ?= build-sanitize
test-sanitize: deps
	cmake -S . -B $(SANITIZE_DIR) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DGAE_SANITIZE=ON
	cmake --build $(SANITIZE_DIR) -j $(JOBS)
	cd $(SANITIZE_DIR) && ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 \
	  UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 ctest --output-on-failure -j $(JOBS)

# The R package, built against this checkout's library and installed into R's library (or RLIB=folder).
rpackage: deps deps-r
	cmake -S . -B $(BUILD_DIR) -DCMAKE_BUILD_TYPE=Release
	cmake --build $(BUILD_DIR) -j $(JOBS) --target gaengine_static
	GAENGINE_ROOT=$(CURDIR) GAENGINE_BUILD=$(abspath $(BUILD_DIR)) R CMD INSTALL --preclean --clean $(if $(RLIB),-l $(RLIB)) rpackage/gaengine

bench: deps build
	cmake --build $(BUILD_DIR) -j $(JOBS) --target gaengine_bench
	$(BUILD_DIR)/gaengine_bench --benchmark_counters_tabular=true

examples: deps build
	$(BUILD_DIR)/make_map_example > examples/f2_five_chromosomes.map

clean:
	rm -rf $(BUILD_DIR) $(SANITIZE_DIR)
