! The Fortran module against the library. Faults it would catch: trailing blanks of
! fixed-length strings reaching the library (keywords and file names not matched), the
! lengths of character buffers and assumed-shape arrays not handed to the routine (a
! short one overwritten), output arguments not written back, a bind(C) callback not
! reaching the library, text from the library not readable in Fortran.
module check_state
  use, intrinsic :: iso_c_binding
  implicit none
  integer :: warnings = 0, last = 0
  character(len=132) :: last_line = ''
contains
  subroutine on_message(number, line) bind(C)
    integer(c_int), value :: number
    type(c_ptr), value :: line
    character(kind=c_char), pointer :: text(:)
    integer :: i
    warnings = warnings + 1
    last = number
    call c_f_pointer(line, text, [132])
    last_line = ''
    do i = 1, 132
      if (text(i) == c_null_char) exit
      last_line(i:i) = text(i)
    end do
  end subroutine on_message

  subroutine expect(ok, what)
    logical, intent(in) :: ok
    character(len=*), intent(in) :: what
    if (.not. ok) then
      print '(2a)', 'FAIL: ', what
      stop 1
    end if
  end subroutine expect
end module check_state

program checks
  use zorvel
  use check_state
  use, intrinsic :: iso_c_binding
  implicit none
  character(len=8) :: device = 'SVG'
  character(len=2 * 10 + 1) :: cbuf
  character(len=5) :: short_buf
  character(len=20000) :: svg
  real(c_double) :: x(4) = [0.0_c_double, 1.0_c_double, 2.0_c_double, 3.0_c_double]
  real(c_double) :: y(4) = [0.0_c_double, 1.0_c_double, 0.0_c_double, 1.0_c_double]
  real(c_double) :: xs(300), ys(300), xshort(5), yshort(5)
  integer(c_int) :: n, nspl, iday, imon, iyear

  call msgcbk(on_message, 'ONLY')

  ! Strings: trailing blanks do not count, a wrong keyword gives warning 2.
  call metafl(device)
  call expect(warnings == 0, 'metafl with trailing blanks warned')
  call setpag('NOPE    ')
  call expect(warnings == 1 .and. last == 2, 'setpag NOPE gave no warning 2')
  call expect(index(last_line, 'NOPE') > 0 .and. index(last_line, 'NOPE ') == 0, &
              'the warning line does not show the value without its blanks')

  ! Output arguments.
  call basdat(1, 1, 2000)
  n = incdat(31, 12, 2000)
  call trfdat(n, iday, imon, iyear)
  call expect(n == 365 .and. iday == 31 .and. imon == 12 .and. iyear == 2000, 'trfdat')

  ! A plot into memory, copied out into a character buffer that the routine is told.
  call memfil('ON')
  call zorini()
  call expect(getlev() == 1, 'getlev after zorini')
  call graf(0.0_c_double, 3.0_c_double, 0.0_c_double, 1.0_c_double, &
            0.0_c_double, 1.0_c_double, 0.0_c_double, 1.0_c_double)
  call curve(x, y, 4)
  call legini(short_buf, 2, 10)  ! 21 bytes needed: refused, not overwritten
  call expect(warnings == 2, 'legini into a short buffer gave no warning')
  call legini(cbuf, 2, 10)
  call leglin(cbuf, 'line one  ', 1)
  call expect(cbuf(1:8) == 'line one' .and. cbuf(21:21) == c_null_char, 'leglin')
  call splmod(3, 100)
  call spline(x, y, 4, xshort, yshort, nspl)  ! 101 points needed
  call expect(nspl == 0 .and. warnings == 3, 'spline into short arrays')
  call spline(x, y, 4, xs, ys, nspl)
  call expect(nspl == 101 .and. abs(xs(101) - 3.0_c_double) < 1e-12_c_double, 'spline')
  call endgrf()
  call zorfin()
  n = rbffil(svg, 0)
  call expect(n > 100 .and. n <= len(svg), 'rbffil size')
  n = rbffil(svg, len(svg))
  call expect(svg(1:5) == '<?xml' .and. index(svg(1:n), '</svg>') > 0, 'rbffil text')
  call expect(warnings == 3, 'unexpected warnings')
  print '(a)', 'fortran checks passed'
end program checks
