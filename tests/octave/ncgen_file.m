function ncgen_file (file, cdl)
  % Writes the netCDF-4 file FILE from the CDL text CDL with ncgen, which is independent
  % of netcdflib.
  ncdump = getenv ('NETCDFLIB_NCDUMP');
  ncgen = 'ncgen';
  if (! isempty (ncdump))
    ncgen = fullfile (fileparts (ncdump), 'ncgen');
  end
  source = [file '.cdl'];
  fid = fopen (source, 'w');
  fputs (fid, cdl);
  fclose (fid);
  [status, out] = system (sprintf ('"%s" -k nc4 -o "%s" "%s" 2>&1', ncgen, file, source));
  assert (status == 0, 'ncgen: %s', out);
end
