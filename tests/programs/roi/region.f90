! The same for Fortran.
program region
  use quern_roi
  implicit none
  call quern_roi_begin()
  call quern_roi_end()
  call quern_roi_begin()
  call quern_roi_end()
  print '(i0)', 7
end program
