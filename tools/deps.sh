#!/usr/bin/env bash
# Installs the Debian packages that building, testing and the example gallery need,
# when they are missing. Idempotent; runs apt-get only when something is missing.
# Usage: tools/deps.sh [package ...]   (default: the whole list below)
set -eu
packages=(
  cmake g++ clang libclang-rt-dev make pkg-config python3
  python3-numpy python3-pil  # tools/compare_formats.py and the browser check (/usr/bin/python3)
  libgtest-dev libgmock-dev
  zlib1g-dev            # deflate of the PDF streams and PNG files
  libtiff-dev libgif-dev  # TIFF and GIF files
  ghostscript           # renders every PostScript/EPS file in the tests
  default-jdk-headless  # the Java binding
  libxml2-utils librsvg2-bin qpdf poppler-utils pngcheck
  libtiff-tools giflib-tools netpbm imagemagick  # read the raster files (consumers.raster_writers)
  chromium              # one SVG page rendered by a browser (consumers.chromium)
  hp2xx                 # reads the HPGL files in the tests
  python3-contourpy qhull-bin  # contour lines and triangulations checked against them
  gfortran                     # the Fortran module (fortran/)
  ipe                          # reads the IPE drawings (consumers.ipe)
  libwmf-bin emf2svg           # read the Windows metafiles (consumers.wmf, consumers.emf)
  python3-pytest python3-pip python3-setuptools  # the Python package: tests, offline pip install
  jupyter-nbconvert python3-ipykernel  # the example notebook, run headless
  proj-bin              # map projections checked against PROJ (maps.proj)
  gmt gmt-gshhg-low     # the map files generated from GSHHG (tools/mapdata), read back by gmt
  libfreetype-dev libfontconfig-dev  # outline fonts (fonts/)
  fonts-urw-base35 fonts-dejavu-core  # the standard fonts' outlines; DejaVu in tests and gallery
  xfonts-base pcf2bdf   # bitmap fonts: BDF files made from the X fonts
  libgtk-3-dev libepoxy-dev  # screen windows, widgets and OpenGL (the screen module)
  xvfb xdotool libxtst-dev libgl1-mesa-dri  # screen tests: a virtual X server, clicks, keys, OpenGL
)
[ $# -gt 0 ] && packages=("$@")
missing=()
for p in "${packages[@]}"; do
  [ "$(dpkg-query -W -f='${Status}' "$p" 2>/dev/null)" = "install ok installed" ] || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0
echo "Installing: ${missing[*]}"
SUDO=""
[ "$(id -u)" -ne 0 ] && SUDO="sudo"
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -qq
$SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
