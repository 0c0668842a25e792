## Interop matrix: for every netCDF format and every type it allows, a variable of netCDF
## shape (2, 3) and two attributes (of the variable and global) written here read bit for
## bit the same in python3-netcdf4 (A), and the same written there read the same here (B).
## Every type is also written here in the other shapes (a cube, a line, a scalar, a record
## variable without records) and read back here.
## Both sides reduce what they hold to one canonical text (tests/interop/interop_matrix.py
## tells how), so the comparison is of bytes, not of printed numbers. Types a format does
## not allow must be refused. The formats x types summary goes to stdout and to
## interop-matrix.txt in the build directory.

## Key, type as written in the canonical lines, operation suffix.
%!function t = matrix_types ()
%!  t = {'byte', 'NC_BYTE', 'Schar';  'char', 'NC_CHAR', 'Text';  'short', 'NC_SHORT', 'Short';
%!       'int', 'NC_INT', 'Int';  'float', 'NC_FLOAT', 'Float';  'double', 'NC_DOUBLE', 'Double';
%!       'ubyte', 'NC_UBYTE', 'Uchar';  'ushort', 'NC_USHORT', 'Ushort';  'uint', 'NC_UINT', 'Uint';
%!       'int64', 'NC_INT64', 'Int64';  'uint64', 'NC_UINT64', 'Uint64';
%!       'string', 'NC_STRING', 'String';  'vlen', 'vlen(NC_INT)', 'Vlen';
%!       'vlen2', 'vlen(vlen(NC_SHORT))', 'Vlen'};
%!endfunction

## Name, create mode, allowed types, what ncdump -k calls it, python's data model.
%!function f = matrix_formats ()
%!  p = @(name) netcdflib ('parameter', name);
%!  classic = {'byte', 'char', 'short', 'int', 'float', 'double'};
%!  cdf5 = [classic, {'ubyte', 'ushort', 'uint', 'int64', 'uint64'}];
%!  f = {'classic', p('NC_CLOBBER'), classic, 'classic', 'NETCDF3_CLASSIC';
%!       '64bit_offset', p('NC_64BIT_OFFSET'), classic, '64-bit offset', 'NETCDF3_64BIT_OFFSET';
%!       'cdf5', 32, cdf5, 'cdf5', 'NETCDF3_64BIT_DATA';
%!       'netcdf4', p('NC_NETCDF4'), [cdf5, {'string', 'vlen', 'vlen2'}], 'netCDF-4', 'NETCDF4';
%!       'netcdf4_classic', p('NC_NETCDF4') + p('NC_CLASSIC_MODEL'), classic, ...
%!       'netCDF-4 classic model', 'NETCDF4_CLASSIC'};
%!endfunction

## Six values of each type with its extremes (the same as the python side's); the global
## attribute holds them reversed, text attributes hold UTF-8 text of their own.
%!function v = samples (key, item)
%!  switch key
%!    case 'byte',   v = int8 ([-128 127 0 -1 1 85]);
%!    case 'ubyte',  v = uint8 ([0 255 128 127 1 170]);
%!    case 'short',  v = int16 ([-32768 32767 0 -1 256 -256]);
%!    case 'ushort', v = uint16 ([0 65535 32768 32767 1 43690]);
%!    case 'int',    v = int32 ([intmin('int32') intmax('int32') 0 -1 65536 -65536]);
%!    case 'uint',   v = uint32 ([0 intmax('uint32') 2^31 2^31-1 1 2863311530]);
%!    case 'int64',  v = [intmin('int64') intmax('int64') 0 -1 int64(2^53)+1 -int64(2^53)-1];
%!    case 'uint64'
%!      v = [uint64(0) intmax('uint64') uint64(2^63) uint64(intmax('int64')) uint64(2^53)+1 1];
%!    case 'float'   # a negative NaN with a payload, infinities, -0, least denormal, max
%!      v = hex2num ({'ffc00123', '7f800000', 'ff800000', '80000000', '00000001', '7f7fffff'}, ...
%!                   'single')';
%!    case 'double'
%!      v = hex2num ({'fff8000000000123', '7ff0000000000000', 'fff0000000000000', ...
%!                    '8000000000000000', '0000000000000001', 'ffefffffffffffff'})';
%!    case 'char'
%!      switch item
%!        case 'var',  v = char ([65 0 127 128 233 255]);
%!        case 'att',  v = char ([195 169 226 130 172 240 159 152 128 32 122]);  # é€😀 z
%!        case 'gatt', v = char ([65 126 195 177]);                              # A~ñ
%!      end
%!      return;
%!    case 'string'
%!      v = {'', 'a', char([195 169]), [char([226 130 172]) 'uro'], char([240 159 152 128]), ...
%!           "tab\there"};
%!    case 'vlen'
%!      v = {int32([]), intmin('int32'), int32([1; 2; 3]), [intmax('int32'); -1], int32([]), ...
%!           int32(0)};
%!    case 'vlen2'
%!      v = {{}, {int16([])}, {int16([-32768; 32767])}, {int16(1); int16([2; 3]); int16([])}, ...
%!           {int16(0)}, {int16([]); int16(5)}};
%!  end
%!  if (strcmp (item, 'gatt'))
%!    v = v(end:-1:1);
%!  end
%!endfunction

## The other shapes: name suffix, dimensions, size written, size read (a line written as
## a row reads as a column; a record variable without records as 0-by-0 of the class).
%!function s = shapes ()
%!  s = {'_cube', {'x', 'y', 'z'}, [3 2 2], [3 2 2];  '_line', {'x'}, [1 3], [3 1];
%!       '_scalar', {}, [1 1], [1 1];  '_rec', {'t'}, [], [0 0]};
%!endfunction

%!function v = shaped (key, dims)
%!  v = samples (key, 'var');
%!  v = reshape (v(mod (0:prod (dims) - 1, numel (v)) + 1), dims);
%!endfunction

## Mismatches of the other shapes read back from FILE.
%!function bad = check_shapes (file, written, tt)
%!  bad = {};
%!  nc = netcdflib ('open', file, 'NC_NOWRITE');
%!  for k = written
%!    for s = shapes ()'
%!      name = [tt{k, 1} s{1}];
%!      got = netcdflib (['getVar' tt{k, 3}], nc, netcdflib ('inqVarID', nc, name));
%!      if (isempty (s{3}))
%!        want = resize (shaped (tt{k, 1}, [1 1]), 0, 0);
%!      else
%!        want = reshape (shaped (tt{k, 1}, s{3}), s{4});
%!      end
%!      if (! strcmp (class (got), class (want)) || ! isequaln (got, want))
%!        bad{end+1} = sprintf ('%s: %s %s read back, %s %s written', name, class (got), ...
%!                              mat2str (size (got)), class (want), mat2str (size (want)));
%!      end
%!    end
%!  end
%!  netcdflib ('close', nc);
%!endfunction

## Elements in linear order, each as the hex of its little-endian bytes; Vlen elements nested.
%!function s = canon (value, desc)
%!  n = numel (value);
%!  if (strncmp (desc, 'vlen(', 5))
%!    parts = cell (1, n);
%!    for k = 1:n
%!      parts{k} = canon (value{k}, desc(6:end-1));
%!    end
%!  elseif (strcmp (desc, 'NC_STRING'))
%!    parts = cell (1, n);
%!    for k = 1:n
%!      parts{k} = sprintf ('%02x', uint8 (value{k}));
%!    end
%!  elseif (n == 0)
%!    parts = {};
%!  else
%!    if (ischar (value))
%!      value = uint8 (value);
%!    end
%!    bytes = reshape (typecast (value(:), 'uint8'), [], n);
%!    parts = cellstr (reshape (sprintf ('%02x', bytes), 2 * rows (bytes), n)')';
%!  end
%!  s = sprintf ('%s,', parts{:});
%!  s = ['(' s(1:end-1) ')'];
%!endfunction

%!function name = type_name (nc, xtype)
%!  atomic = {'NC_BYTE', 'NC_CHAR', 'NC_SHORT', 'NC_INT', 'NC_FLOAT', 'NC_DOUBLE', 'NC_UBYTE', ...
%!            'NC_USHORT', 'NC_UINT', 'NC_INT64', 'NC_UINT64', 'NC_STRING'};
%!  if (xtype >= 1 && xtype <= 12)
%!    name = atomic{xtype};
%!    return;
%!  end
%!  [~, ~, base, ~, typeclass] = netcdflib ('inqUserType', nc, xtype);
%!  assert (typeclass, 13);   # NC_VLEN
%!  name = ['vlen(' type_name(nc, base) ')'];
%!endfunction

## Defines and writes every allowed type; tries the others, which must be refused. Returns
## the keys refused.
%!function [refused, written] = write_file (file, mode, allowed, tt)
%!  p = @(name) netcdflib ('parameter', name);
%!  nc = netcdflib ('create', file, mode);
%!  y = netcdflib ('defDim', nc, 'y', 2);
%!  dims = [netcdflib('defDim', nc, 'x', 3), y];
%!  named = struct ('x', dims(1), 'y', y, 'z', netcdflib ('defDim', nc, 'z', 2), ...
%!                  't', netcdflib ('defDim', nc, 't', 0));
%!  varids = zeros (1, rows (tt));
%!  refused = {};
%!  written = [];
%!  for k = 1:rows (tt)
%!    [key, desc, suffix] = tt{k, :};
%!    try
%!      switch key
%!        case 'vlen',  xtype = netcdflib ('defVlen', nc, 'vint', p('NC_INT'));
%!        case 'vlen2', xtype = netcdflib ('defVlen', nc, 'vvshort', ...
%!                                         netcdflib ('defVlen', nc, 'vshort', p('NC_SHORT')));
%!        otherwise,    xtype = p(desc);
%!      end
%!      varids(k) = netcdflib ('defVar', nc, key, xtype, dims);
%!      if (! any (strcmp (key, allowed)))
%!        continue;   # accepted though not allowed: shows as a failure
%!      end
%!      written(end+1) = k;
%!    catch err
%!      netcdf_error = strncmp (err.identifier, 'QUARNA:imagesci:netcdf:', 23);
%!      if (any (strcmp (key, allowed)) || ! netcdf_error)
%!        rethrow (err);
%!      end
%!      refused{end+1} = key;
%!      continue;
%!    end
%!    for sh = shapes ()'
%!      netcdflib ('defVar', nc, [key sh{1}], xtype, cellfun (@(d) named.(d), sh{2}));
%!    end
%!    netcdflib (['putAtt' suffix], nc, varids(k), 'a', xtype, samples (key, 'att'));
%!    netcdflib (['putAtt' suffix], nc, p('NC_GLOBAL'), ['g_' key], xtype, samples (key, 'gatt'));
%!  end
%!  netcdflib ('endDef', nc);
%!  for k = written
%!    netcdflib (['putVar' tt{k, 3}], nc, varids(k), reshape (samples (tt{k, 1}, 'var'), 3, 2));
%!    for sh = shapes ()'
%!      if (! isempty (sh{3}))
%!        netcdflib (['putVar' tt{k, 3}], nc, netcdflib ('inqVarID', nc, [tt{k, 1} sh{1}]), ...
%!                   shaped (tt{k, 1}, sh{3}));
%!      end
%!    end
%!  end
%!  netcdflib ('close', nc);
%!endfunction

## Canonical lines of FILE read through netcdflib: "TYPE ITEM" -> "NCTYPE SHAPE CANON".
%!function got = read_file (file, allowed, tt)
%!  got = cell (0, 2);
%!  nc = netcdflib ('open', file, 'NC_NOWRITE');
%!  unwind_protect
%!    for k = find (ismember (tt(:, 1), allowed))'
%!      [key, ~, suffix] = tt{k, :};
%!      varid = netcdflib ('inqVarID', nc, key);
%!      [~, xtype] = netcdflib ('inqVar', nc, varid);
%!      desc = type_name (nc, xtype);
%!      data = netcdflib (['getVar' suffix], nc, varid);
%!      shape = sprintf ('%dx', size (data)(end:-1:1));
%!      got(end+1, :) = {[key ' var'], sprintf('%s %s %s', desc, shape(1:end-1), canon (data, desc))};
%!      for item = {'att', varid, 'a'; 'gatt', netcdflib('parameter', 'NC_GLOBAL'), ['g_' key]}'
%!        [xtype, len] = netcdflib ('inqAtt', nc, item{2}, item{3});
%!        desc = type_name (nc, xtype);
%!        value = netcdflib (['getAtt' suffix], nc, item{2}, item{3});
%!        if (! isrow (value) || numel (value) != len)
%!          error ('%s %s: %s of %d', key, item{1}, mat2str (size (value)), len);
%!        end
%!        got(end+1, :) = {[key ' ' item{1}], sprintf('%s %d %s', desc, len, canon (value, desc))};
%!      end
%!    end
%!  unwind_protect_cleanup
%!    netcdflib ('close', nc);
%!  end_unwind_protect
%!endfunction

## The value of KEY in a two-column table of keys and values.
%!function v = entry (table, key)
%!  v = '(missing)';
%!  k = find (strcmp (table(:, 1), key), 1);
%!  if (! isempty (k))
%!    v = table{k, 2};
%!  end
%!endfunction

%!function s = shape_of (item, value)
%!  if (strcmp (item, 'var'))
%!    s = '2x3';
%!  else
%!    s = sprintf ('%d', numel (value));
%!  end
%!endfunction

%!function s = matrix_summary (formats, keys, cells, files, details)
%!  s = sprintf (['interop matrix, python3-netcdf4 and netcdflib: A written here and read ' ...
%!                'there, B the reverse; variable, variable attribute and global attribute ' ...
%!                'each\n']);
%!  s = [s sprintf('%-16s %-5s', 'format', 'file') sprintf(' %-6s', keys{:}) "\n"];
%!  for f = 1:numel (formats)
%!    s = [s sprintf('%-16s %-5s', formats{f}, files{f}) sprintf(' %-6s', cells{f, :}) "\n"];
%!  end
%!  count = @(c, what) sum (strcmp (c(:), what));
%!  s = [s sprintf('%d pass, %d FAIL, %d not allowed (refused)\n', count (cells, 'pass'), ...
%!                 count (cells, 'FAIL') + count (files, 'FAIL'), count (cells, '-'))];
%!  if (! isempty (details))
%!    s = [s sprintf('  %s\n', details{:})];
%!  end
%!endfunction

%!test
%! work = work_dir ();
%! tt = matrix_types ();
%! ff = matrix_formats ();
%! refused = cell (rows (ff), 1);
%! details = {};
%! for f = 1:rows (ff)
%!   try
%!     file = fullfile (work, ['oct-' ff{f, 1} '.nc']);
%!     [refused{f}, written] = write_file (file, ff{f, 2}, ff{f, 3}, tt);
%!     details = [details, strcat([ff{f, 1} ':'], check_shapes(file, written, tt))];
%!   catch err
%!     details{end+1} = sprintf ('%s A: %s', ff{f, 1}, err.message);
%!   end
%! end
%! script = fullfile (fileparts (file_in_loadpath ('interop_matrix_test.m')), '..', 'interop', ...
%!                    'interop_matrix.py');
%! [status, out] = system (sprintf ('/usr/bin/python3 "%s" "%s" %s', script, work, ...
%!                                  strjoin (ff(:, 1)', ' ')));
%! assert (status == 0, '%s', out);
%! python = regexp (out, '(\S+ \S+ \S+ \S+) ([^\n]*)', 'tokens');
%! python = vertcat (python{:});
%! ## One cell per format and type: pass, FAIL or - (not allowed, and refused).
%! cells = repmat ({'-'}, rows (ff), rows (tt));
%! files = repmat ({'pass'}, rows (ff), 1);
%! for f = 1:rows (ff)
%!   fmt = ff{f, 1};
%!   pyfile = fullfile (work, ['py-' fmt '.nc']);
%!   [~, kind] = system (sprintf ('"%s" -k "%s"', getenv ('NETCDFLIB_NCDUMP'), pyfile));
%!   model = entry (python, ['read ' fmt ' - model']);
%!   if (! strcmp (strtrim (kind), ff{f, 4}) || ! strcmp (model, ['- - ' ff{f, 5}]))
%!     files{f} = 'FAIL';
%!     details{end+1} = sprintf ('%s: file kinds %s / %s', fmt, strtrim (kind), model);
%!   end
%!   try
%!     here = read_file (pyfile, ff{f, 3}, tt);
%!   catch err
%!     here = cell (0, 2);
%!     details{end+1} = sprintf ('%s B: %s', fmt, err.message);
%!   end
%!   for t = 1:rows (tt)
%!     key = tt{t, 1};
%!     if (! any (strcmp (key, ff{f, 3})))
%!       if (! any (strcmp (key, refused{f})))
%!         cells{f, t} = 'FAIL';
%!         details{end+1} = sprintf ('%s %s: accepted, not allowed in the format', fmt, key);
%!       end
%!       continue;
%!     end
%!     cells{f, t} = 'pass';
%!     for item = {'var', 'att', 'gatt'}
%!       a_want = sprintf ('%s %s %s', tt{t, 2}, shape_of (item{1}, samples (key, item{1})), ...
%!                         canon (samples (key, item{1}), tt{t, 2}));
%!       a_got = entry (python, sprintf ('read %s %s %s', fmt, key, item{1}));
%!       b_want = entry (python, sprintf ('wrote %s %s %s', fmt, key, item{1}));
%!       b_got = entry (here, [key ' ' item{1}]);
%!       for c = {'A', a_want, a_got; 'B', b_want, b_got}'
%!         if (! strcmp (c{2}, c{3}))
%!           cells{f, t} = 'FAIL';
%!           details{end+1} = sprintf ('%s %s %s %s: want %s, got %s', c{1}, fmt, key, ...
%!                                     item{1}, c{2}, c{3});
%!         end
%!       end
%!     end
%!   end
%! end
%! summary = matrix_summary (ff(:, 1), tt(:, 1), cells, files, details);
%! printf ('%s', summary);
%! where = fullfile (fileparts (getenv ('NETCDFLIB_TEST_TMP')), 'interop-matrix.txt');
%! if (isempty (getenv ('NETCDFLIB_TEST_TMP')))
%!   where = fullfile (tempdir (), 'interop-matrix.txt');
%! end
%! fid = fopen (where, 'w');
%! fputs (fid, summary);
%! fclose (fid);
%! assert (isempty (details), '%s', strjoin (details, "\n"));
