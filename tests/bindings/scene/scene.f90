! The scene of scene.c from Fortran. Usage: scene_fortran DEVICE FILE
program scene
  use zorvel
  use, intrinsic :: iso_c_binding, only: c_double
  implicit none
  real(c_double) :: x(41), y1(41), y2(41)
  character(len=2 * 24 + 1) :: cbuf
  character(len=256) :: device, file
  integer :: i

  do i = 0, 40
    x(i + 1) = i / 4.0_c_double
    y1(i + 1) = (x(i + 1) * (10.0_c_double - x(i + 1))) / 12.5_c_double - 1.0_c_double
    y2(i + 1) = mod(i * 7, 11) / 10.0_c_double - 0.5_c_double
  end do
  call get_command_argument(1, device)
  call get_command_argument(2, file)
  call metafl(device)  ! trailing blanks of the fixed-length strings are dropped
  call setfil(file)
  call setpag('DA4L')
  call zorini()
  call legini(cbuf, 2, 24)
  call complx()
  call titlin('One figure, five languages', 1)
  call name('Distance x', 'X')
  call name('Value y', 'Y')
  call labdig(1, 'X')
  call graf(0.0_c_double, 10.0_c_double, 0.0_c_double, 2.0_c_double, &
            -1.0_c_double, 1.0_c_double, -1.0_c_double, 0.5_c_double)
  call title()
  call color('RED')
  call linwid(3)
  call curve(x, y1, 41)
  call color('BLUE')
  call incmrk(-1)
  call marker(15)
  call curve(x, y2, 41)
  call color('FORE')
  call leglin(cbuf, 'parabola', 1)
  call leglin(cbuf, 'scattered points', 2)
  call legend(cbuf, 7)
  call endgrf()
  call zorfin()
end program scene
