! A Fortran program with the zorvel module: a damped wave with its envelope and a
! legend on the first page, and on the second the surface z = f(x, y) of a Fortran
! function, which the library calls back (surfun), into "surface_plot.pdf".
! Build: gfortran surface_plot.f90 $(pkg-config --cflags --libs zorvel-fortran)
module surface_function
  use, intrinsic :: iso_c_binding, only: c_double
  implicit none
contains
  ! The surface: bind(C) with value arguments, as the abstract interface
  ! zorvel_surface_fn says.
  function ripple(x, y) result(z) bind(C)
    real(c_double), value :: x, y
    real(c_double) :: z
    z = cos(sqrt(x * x + y * y)) * exp(-0.1_c_double * (x * x + y * y))
  end function ripple
end module surface_function

program surface_plot
  use zorvel
  use surface_function
  use, intrinsic :: iso_c_binding, only: c_double
  implicit none
  integer, parameter :: n = 201
  real(c_double) :: t(n), wave(n), envelope(n)
  character(len=2 * 20 + 1) :: cbuf
  integer :: i

  do i = 1, n
    t(i) = (i - 1) * 0.05_c_double
    envelope(i) = exp(-0.3_c_double * t(i))
    wave(i) = envelope(i) * cos(4.0_c_double * t(i))
  end do

  call metafl('PDF')
  call setfil('surface_plot.pdf')
  call filmod('DELE')
  call zorini()
  call helve()
  call name('Time t', 'X')
  call name('Amplitude', 'Y')
  call titlin('A damped wave from Fortran', 1)
  call legini(cbuf, 2, 20)
  call graf(0.0_c_double, 10.0_c_double, 0.0_c_double, 2.0_c_double, &
            -1.0_c_double, 1.0_c_double, -1.0_c_double, 0.5_c_double)
  call title()
  call linwid(4)
  call curve(t, wave, n)
  call dash()
  call curve(t, envelope, n)
  call solid()
  call leglin(cbuf, 'cos(4t) exp(-0.3t)', 1)
  call leglin(cbuf, 'envelope', 2)
  call legend(cbuf, 7)
  call endgrf()

  call newpag()
  call titlin('The surface of a Fortran function (surfun)', 1)
  call name('x', 'X')
  call name('y', 'Y')
  call name('z', 'Z')
  call linwid(1)
  call graf3d(-6.0_c_double, 6.0_c_double, -6.0_c_double, 2.0_c_double, &
              -6.0_c_double, 6.0_c_double, -6.0_c_double, 2.0_c_double, &
              -0.5_c_double, 1.0_c_double, -0.5_c_double, 0.5_c_double)
  call title()
  call surfun(ripple, 49, 0.0_c_double, 49, 0.0_c_double)
  call endgrf()
  call zorfin()
end program surface_plot
