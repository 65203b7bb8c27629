! The region of interest for Fortran: see roi.h. Compile this file and roi.c with the program.
module quern_roi
  implicit none
  interface
    subroutine quern_roi_begin() bind(c)
    end subroutine
    subroutine quern_roi_end() bind(c)
    end subroutine
  end interface
end module
